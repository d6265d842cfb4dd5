# The installed package: headers with their folders under include/zel, the libraries, and what find_package(zel) needs.
include(CMakePackageConfigHelpers)

install(TARGETS kepcore kepalgo zelmodel zel EXPORT zelTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

# Headers that only the library's own sources include stay at home.
set(private_headers
  zel_framelist.h kep_block.h kep_runs.h kep_convert.h kep_description.h kep_file.h kep_ics kep_systemerror.h kep_tiff _impl.h
  zel_marchingcubes.h zel_surfacewalk.h zel_qualifiedname.h zel_saturate.h zel_channelparams.h zel_formatnumber.h
  zel_paintbuffered.h)
list(JOIN private_headers "|" private_pattern)
foreach(room core model image histogram dialogs volume viewer mapping)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${room} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zel
    FILES_MATCHING PATTERN "*.h" PATTERN "wdr" EXCLUDE REGEX "/[^/]*(${private_pattern})[^/]*$" EXCLUDE)
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zel)
install(EXPORT zelTargets NAMESPACE zel:: DESTINATION ${package_folder})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/zelConfig.cmake.in ${PROJECT_BINARY_DIR}/zelConfig.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zelConfig.cmake ${PROJECT_BINARY_DIR}/zelConfigVersion.cmake
  ${PROJECT_SOURCE_DIR}/cmake/zelWx.cmake DESTINATION ${package_folder})
