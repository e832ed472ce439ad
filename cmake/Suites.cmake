# One ctest entry for each suite of a test program, where a process for each test would cost more than
# most of the tests do. What fails is listed by the program, by its name.
#
#   harbor_discover_suites(target [TIMEOUT seconds] [APART suites])
#
# APART is a regular expression of suites whose tests each need a process of their own. The entries
# are made when the program is built, from the tests that it lists.
function(harbor_discover_suites target)
  cmake_parse_arguments(arg "" "TIMEOUT;APART" "" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  set(entries ${CMAKE_CURRENT_BINARY_DIR}/${target}_suites.cmake)
  add_custom_command(TARGET ${target} POST_BUILD BYPRODUCTS ${entries} VERBATIM
    COMMAND ${CMAKE_COMMAND} -D program=$<TARGET_FILE:${target}> -D entries=${entries}
            -D "apart=${arg_APART}" -D timeout=${arg_TIMEOUT}
            -P ${PROJECT_SOURCE_DIR}/cmake/ListSuites.cmake)
  set(include ${CMAKE_CURRENT_BINARY_DIR}/${target}_include.cmake)
  file(WRITE ${include} "if(EXISTS \"${entries}\")\n  include(\"${entries}\")\n"
                        "else()\n  add_test(${target}_NOT_BUILT ${target}_NOT_BUILT)\nendif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${include})
endfunction()

# Suites named ...AsRoot make network namespaces, mount file systems or become another user, which
# root alone may. Who is not root leaves them out; what is in here goes to gtest_discover_tests.
execute_process(COMMAND id -u OUTPUT_VARIABLE harbor_user OUTPUT_STRIP_TRAILING_WHITESPACE)
set(HARBOR_TESTS_AS_USER "")
if(NOT harbor_user EQUAL 0)
  message(STATUS "Not root: tests in suites named ...AsRoot and lab.collect are left out")
  set(HARBOR_TESTS_AS_USER TEST_FILTER "-*AsRoot.*")
endif()
