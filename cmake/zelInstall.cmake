# The installed package: headers with their folders under include/zel, the libraries, and what find_package(zel) needs.
include(CMakePackageConfigHelpers)

install(TARGETS kepcore kepalgo zelmodel zel EXPORT zelTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zel)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zel)
install(EXPORT zelTargets NAMESPACE zel:: DESTINATION ${package_folder})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/zelConfig.cmake.in ${PROJECT_BINARY_DIR}/zelConfig.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zelConfig.cmake ${PROJECT_BINARY_DIR}/zelConfigVersion.cmake
  ${PROJECT_SOURCE_DIR}/cmake/zelWx.cmake DESTINATION ${package_folder})
