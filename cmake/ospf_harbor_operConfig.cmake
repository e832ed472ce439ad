include(${CMAKE_CURRENT_LIST_DIR}/ospf_harbor_operTargets.cmake)
