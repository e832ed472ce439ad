# The one custom command: what follows from the schema and only the build needs. The emitter writes
# a file only when its text changes; the stamp tells when it last ran.
set(HARBOR_EMITTED ${CMAKE_CURRENT_BINARY_DIR}/emitted)

# The names of the units, read from the schema's ordered lists, so that every output is declared.
file(READ ${CMAKE_CURRENT_SOURCE_DIR}/src/model/lists.hpp lists)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${CMAKE_CURRENT_SOURCE_DIR}/src/model/lists.hpp)
string(REGEX MATCHALL "&(types|enumerations|flag_sets|tables)::[a-z0-9_]+" units "${lists}")
set(HARBOR_FORWARDERS ${HARBOR_EMITTED}/forwarders/module.cpp)
foreach(unit ${units})
  string(REGEX REPLACE "^&tables::" "tbl_" unit ${unit})
  string(REGEX REPLACE "^&[a-z_]+::" "" unit ${unit})
  list(APPEND HARBOR_FORWARDERS ${HARBOR_EMITTED}/forwarders/${unit}.cpp)
endforeach()
set(HARBOR_EMITTED_SOURCES ${HARBOR_FORWARDERS} ${HARBOR_EMITTED}/type_records.c
                           ${HARBOR_EMITTED}/vfts.c)
set(HARBOR_EMITTED_SECTIONS ${HARBOR_EMITTED}/sections.s)
set(HARBOR_EMITTED_SECTION_BYTES)
foreach(bytes xlog_luids_types xlog_luids_tables xlog_format_strings xlog_decoder halyard)
  list(APPEND HARBOR_EMITTED_SECTION_BYTES ${HARBOR_EMITTED}/sections/${bytes}.bin)
endforeach()
set(HARBOR_EMITTED_HEADERS ${HARBOR_EMITTED}/type_records.hpp
                           ${HARBOR_EMITTED}/handler_symbols.hpp)

add_custom_command(
  OUTPUT ${HARBOR_EMITTED}/stamp
  BYPRODUCTS ${HARBOR_EMITTED_SOURCES} ${HARBOR_EMITTED_HEADERS} ${HARBOR_EMITTED}/exports.map
             ${HARBOR_EMITTED_SECTIONS} ${HARBOR_EMITTED_SECTION_BYTES}
  COMMAND emit --build ${HARBOR_EMITTED} ${CMAKE_CURRENT_SOURCE_DIR}
  COMMAND ${CMAKE_COMMAND} -E touch ${HARBOR_EMITTED}/stamp
  DEPENDS emit
  COMMENT "Emitting forwarders, type records, vfts and sections")
add_custom_target(emitted DEPENDS ${HARBOR_EMITTED}/stamp)

# What is checked in: renewed by the first, compared by the second.
add_custom_target(emit-source COMMAND emit --source ${CMAKE_CURRENT_SOURCE_DIR} VERBATIM)
if(HARBOR_TESTS)
  add_test(NAME emit.check COMMAND emit --check ${CMAKE_CURRENT_SOURCE_DIR})
endif()
