# HARBOR_SANITIZE=address,undefined (with clang: GCC 12 takes no constant address comparisons under
# it), the same with fuzzer-no-link for what fuzz targets steer by, or thread, for everything in the
# build.
if(HARBOR_SANITIZE)
  add_compile_options(-fsanitize=${HARBOR_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Functions are called through one erased shape by the vft's users and by tests that compose
    # names from the schema; what that check would report is how this ABI is meant to be used.
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-sanitize=function>)
  endif()
  add_link_options(-fsanitize=${HARBOR_SANITIZE})
endif()
