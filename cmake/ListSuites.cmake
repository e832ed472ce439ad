# Writes the ctest entries of a test program to `entries`; Suites.cmake runs this.
cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND ${program} --gtest_list_tests OUTPUT_VARIABLE listed TIMEOUT 60
                COMMAND_ERROR_IS_FATAL ANY)

set(script "")
function(add_entry name filter)
  # An entry that finds no test, or passes one over, has lost it.
  string(APPEND script "add_test([=[${name}]=] [=[${program}]=] [=[--gtest_filter=${filter}]=])\n"
         "set_tests_properties([=[${name}]=] PROPERTIES TIMEOUT ${timeout} FAIL_REGULAR_EXPRESSION "
         "[=[Running 0 tests|[[]  SKIPPED []]]=])\n")
  set(script "${script}" PARENT_SCOPE)
endfunction()

# What follows a "#" is the text of a parameter, which may hold anything.
string(REGEX REPLACE "[ ]*#[^\n]*" "" listed "${listed}")
string(REPLACE "\n" ";" listed "${listed}")
foreach(line IN LISTS listed)
  if(line MATCHES "^([^ ]+)\\.$")
    set(suite ${CMAKE_MATCH_1})
    string(CONCAT is_apart "^(" "${apart}" ")$")
    if(NOT apart OR NOT suite MATCHES "${is_apart}")
      add_entry(${suite} "${suite}.*")
    endif()
  elseif(line MATCHES "^  (.+)$")
    set(test ${suite}.${CMAKE_MATCH_1})
    if(apart AND suite MATCHES "${is_apart}")
      add_entry(${test} ${test})
    endif()
  endif()
endforeach()
file(WRITE ${entries} "${script}")
