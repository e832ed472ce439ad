# Warnings are errors, for both compilers that the project is built with.
add_compile_options(-Wall -Wextra -Wpedantic -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options(-Wno-unused-command-line-argument)
endif()
