# Run by cpack when the packages are made. cpack gives a package with libraries scripts that call ldconfig; Debian has a
# trigger for that, which runs it once for all packages that are installed together.
foreach(package ${CPACK_PACKAGE_FILES})
  if(package MATCHES "/${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME}_[^/]*\\.deb$")
    set(folder ${package}.unpacked)
    execute_process(COMMAND dpkg-deb --raw-extract ${package} ${folder} COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND chmod 755 ${folder} ${folder}/DEBIAN COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE ${folder}/DEBIAN/postinst ${folder}/DEBIAN/postrm)
    execute_process(COMMAND dpkg-deb --root-owner-group -Z${CPACK_DEBIAN_COMPRESSION_TYPE} --build ${folder} ${package}
      OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE ${folder})
  endif()
endforeach()
