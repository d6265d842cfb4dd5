# What cmake --install gives, in four components: the shared libraries (library); headers with their folders under
# include/zel, and what find_package(zel) and pkg-config need (development); the program and all that a desktop wants to
# know of it (viewer); guides and examples (documentation).
include(CMakePackageConfigHelpers)

install(TARGETS kepcore kepalgo zelmodel zel EXPORT zelTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zel COMPONENT development)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zel)
install(EXPORT zelTargets NAMESPACE zel:: DESTINATION ${package_folder} COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/zelConfig.cmake.in ${PROJECT_BINARY_DIR}/zelConfig.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zelConfig.cmake ${PROJECT_BINARY_DIR}/zelConfigVersion.cmake
  ${PROJECT_SOURCE_DIR}/cmake/zelWx.cmake DESTINATION ${package_folder} COMPONENT development)

# The toolkit has no file for pkg-config, only a program that prints its flags; zel.pc takes them as they are now.
if(wxWidgets_CONFIG_EXECUTABLE)
  foreach(flags cxxflags libs)
    execute_process(COMMAND ${wxWidgets_CONFIG_EXECUTABLE} --${flags} gl,core,base
      OUTPUT_VARIABLE wx_${flags} OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  # Found from where the file lies, so that any prefix works, also one given to cmake --install.
  set(pc_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  file(RELATIVE_PATH pc_to_prefix /prefix/${pc_folder} /prefix)
  string(REGEX REPLACE "/$" "" pc_to_prefix ${pc_to_prefix})
  configure_file(${PROJECT_SOURCE_DIR}/packaging/zel.pc.in ${PROJECT_BINARY_DIR}/zel.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/zel.pc DESTINATION ${pc_folder} COMPONENT development)
endif()

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(share ${CMAKE_INSTALL_DATAROOTDIR})
install(FILES ${packaging}/zelviewer.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT viewer)
install(FILES ${packaging}/zelviewer.desktop DESTINATION ${share}/applications COMPONENT viewer)
install(FILES ${packaging}/org.zel.zelviewer.metainfo.xml DESTINATION ${share}/metainfo COMPONENT viewer)
install(FILES ${packaging}/zelviewer.xml DESTINATION ${share}/mime/packages COMPONENT viewer)
install(FILES ${packaging}/zelviewer.bash DESTINATION ${share}/bash-completion/completions RENAME zelviewer
  COMPONENT viewer)
install(DIRECTORY ${packaging}/icons/ DESTINATION ${share}/icons/hicolor COMPONENT viewer)

# Beside one another as they are here, so that the links between them hold.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
  PATTERN docs/README.md EXCLUDE PATTERN build EXCLUDE)
