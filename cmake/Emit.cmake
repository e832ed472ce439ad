# What follows from the schema and only the build needs is emitted by one custom command. The emitter
# writes a file only when its text changes; the stamp tells when it last ran.

# The names of the units, read from the schema's ordered lists, so that every output is declared.
file(READ ${CMAKE_CURRENT_SOURCE_DIR}/src/model/lists.hpp lists)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${CMAKE_CURRENT_SOURCE_DIR}/src/model/lists.hpp)
string(REGEX MATCHALL "&(types|enumerations|flag_sets|tables)::[a-z0-9_]+" units "${lists}")
set(HARBOR_FORWARDERS forwarders/module.cpp)
foreach(unit ${units})
  string(REGEX REPLACE "^&tables::" "tbl_" unit ${unit})
  string(REGEX REPLACE "^&[a-z_]+::" "" unit ${unit})
  list(APPEND HARBOR_FORWARDERS forwarders/${unit}.cpp)
endforeach()
set(HARBOR_SECTION_BYTES xlog_luids_types xlog_luids_tables xlog_format_strings xlog_decoder halyard)
list(TRANSFORM HARBOR_SECTION_BYTES REPLACE "(.+)" "sections/\\1.bin")

# Has the emitter write into the folder, as the target of that name. HARBOR_FORWARDERS in units,
# HARBOR_EMITTED_SOURCES and HARBOR_EMITTED_SECTIONS are then what a library is built from,
# HARBOR_EMITTED_SECTION_BYTES what the sections are assembled from. What else is to run comes last,
# as COMMAND lines.
function(harbor_emit target emitter folder)
  set(sources type_records.c vfts.c)
  set(forwarders ${HARBOR_FORWARDERS})
  set(bytes ${HARBOR_SECTION_BYTES})
  list(TRANSFORM sources PREPEND ${folder}/)
  list(TRANSFORM forwarders PREPEND ${folder}/)
  list(TRANSFORM bytes PREPEND ${folder}/)
  add_custom_command(
    OUTPUT ${folder}/stamp
    BYPRODUCTS ${forwarders} ${sources} ${folder}/type_records.hpp ${folder}/handler_symbols.hpp
               ${folder}/table_rows.inc ${folder}/flat_tables.inc ${folder}/exports.map ${folder}/sections.s ${bytes}
    COMMAND ${emitter} --build ${folder} ${PROJECT_SOURCE_DIR}
    ${ARGN}
    COMMAND ${CMAKE_COMMAND} -E touch ${folder}/stamp
    DEPENDS ${emitter}
    COMMENT "Emitting forwarders, type records, vfts and sections into ${folder}")
  add_custom_target(${target} DEPENDS ${folder}/stamp)
  set(HARBOR_EMITTED_SOURCES ${sources} PARENT_SCOPE)
  set(HARBOR_EMITTED_SECTIONS ${folder}/sections.s PARENT_SCOPE)
  set(HARBOR_EMITTED_SECTION_BYTES ${bytes} PARENT_SCOPE)
endfunction()

set(HARBOR_EMITTED ${CMAKE_CURRENT_BINARY_DIR}/emitted)
harbor_emit(emitted emit ${HARBOR_EMITTED})

# What is checked in: renewed by the first, compared by the second.
add_custom_target(emit-source COMMAND emit --source ${CMAKE_CURRENT_SOURCE_DIR} VERBATIM)
if(HARBOR_TESTS)
  add_test(NAME emit.check COMMAND emit --check ${CMAKE_CURRENT_SOURCE_DIR})
endif()
