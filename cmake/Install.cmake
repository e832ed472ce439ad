# What a user builds against: the two libraries, their headers, the CMake package and the pkg-config
# files.
include(CMakePackageConfigHelpers)

install(TARGETS kelp ospf_harbor_oper EXPORT ospf_harbor_oper
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
foreach(library kelp ospf_harbor_oper)
  configure_file(cmake/${library}.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
