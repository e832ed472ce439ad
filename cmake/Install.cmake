# What a user builds against: the libraries, their headers, the CMake package and the pkg-config
# files.
include(CMakePackageConfigHelpers)

# An installed tree may stand anywhere and be moved: programs and libraries find the libraries, and
# pkg-config its prefix, from where they are themselves.
file(RELATIVE_PATH HARBOR_LIBRARIES_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR}
     ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH HARBOR_PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
     ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" HARBOR_PREFIX_FROM_PC "${HARBOR_PREFIX_FROM_PC}")

set(HARBOR_LIBRARIES kelp ospf_harbor_oper)
if(TARGET ospf_harbor_check)
  list(APPEND HARBOR_LIBRARIES ospf_harbor_check)
  install(DIRECTORY libs/ospf-harbor-check/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()
set_target_properties(${HARBOR_LIBRARIES} PROPERTIES INSTALL_RPATH "$ORIGIN")
if(TARGET ospf-harbor)
  set_target_properties(ospf-harbor PROPERTIES
                        INSTALL_RPATH "$ORIGIN/${HARBOR_LIBRARIES_FROM_PROGRAMS}")
endif()
install(TARGETS ${HARBOR_LIBRARIES} EXPORT ospf_harbor_oper
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ cplusplus/include/ runtime/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT ospf_harbor_oper NAMESPACE ospf_harbor_oper::
        FILE ospf_harbor_operTargets.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ospf_harbor_oper)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ospf_harbor_operConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES cmake/ospf_harbor_operConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/ospf_harbor_operConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ospf_harbor_oper)
foreach(library ${HARBOR_LIBRARIES})
  configure_file(cmake/${library}.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

set(HARBOR_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/ospf-harbor-doc)
install(DIRECTORY examples/ DESTINATION ${HARBOR_DOC_DIR}/examples
        FILES_MATCHING PATTERN "*.c" PATTERN "*.cpp" PATTERN "*.py" PATTERN "*_test.*" EXCLUDE
                       PATTERN "data" EXCLUDE)
install(DIRECTORY examples/data DESTINATION ${HARBOR_DOC_DIR}/examples)
# Made by running what they show, so behind all else; with Debian's Python, which has the packages.
if(HARBOR_PAGES)
  add_custom_target(pages ALL
    COMMAND /usr/bin/python3 ${CMAKE_SOURCE_DIR}/tools/site/build.py ${CMAKE_BINARY_DIR}/pages
            ${CMAKE_BINARY_DIR}
    DEPENDS ospf-harbor ospf_harbor_oper ospf_harbor_check python_rows VERBATIM)
  install(DIRECTORY ${CMAKE_BINARY_DIR}/pages/ DESTINATION ${HARBOR_DOC_DIR}/html)
endif()
