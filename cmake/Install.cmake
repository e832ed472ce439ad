# What a user builds against: the libraries, their headers, the CMake package and the pkg-config
# files.
include(CMakePackageConfigHelpers)

set(HARBOR_LIBRARIES kelp ospf_harbor_oper)
if(TARGET ospf_harbor_check)
  list(APPEND HARBOR_LIBRARIES ospf_harbor_check)
  install(DIRECTORY libs/ospf-harbor-check/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()
install(TARGETS ${HARBOR_LIBRARIES} EXPORT ospf_harbor_oper
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ runtime/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
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
