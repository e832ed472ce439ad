# Where a build stands does not get into what it makes: with SOURCE_DATE_EPOCH set, two builds of one
# source in two folders give the same libraries. Debug builds keep full paths, by which a debugger
# finds the sources.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=>")
string(FIND ${CMAKE_BINARY_DIR}/ ${CMAKE_SOURCE_DIR}/ place)
if(NOT place EQUAL 0)
  add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${CMAKE_BINARY_DIR}/=build/>")
endif()
