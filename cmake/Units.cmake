# Sources that include the same dear headers, compiled several to a unit: the headers are parsed and
# the templates that the sources share are made once for each unit, not once for each source. That is
# most of what such a source costs.

# Sets <result> to that many units, which take turns in including the sources. The sources are named
# as the include folders of the target have them, so that the text of a unit, and with it what a
# compiler cache knows it by, is the same wherever the project stands.
function(harbor_units result name count)
  set(units)
  math(EXPR last "${count} - 1")
  foreach(number RANGE ${last})
    set(text_${number} "")
  endforeach()
  set(turn 0)
  foreach(source ${ARGN})
    string(APPEND text_${turn} "#include \"${source}\"\n")
    math(EXPR turn "(${turn} + 1) % ${count}")
  endforeach()
  foreach(number RANGE ${last})
    set(unit ${CMAKE_CURRENT_BINARY_DIR}/units/${name}_${number}.cpp)
    file(CONFIGURE OUTPUT ${unit} CONTENT "${text_${number}}" @ONLY)
    list(APPEND units ${unit})
  endforeach()
  set(${result} ${units} PARENT_SCOPE)
endfunction()
