# Warnings are errors, for both compilers that the project is built with.
add_compile_options(-Wall -Wextra -Wpedantic -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlaps in optimised std::string that are not there.
  add_compile_options(-Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options(-Wno-unused-command-line-argument)
endif()
