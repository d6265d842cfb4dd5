# Run by cpack when the components are installed in folders of their own and not packed yet: what Debian asks of each
# package beside that. These are copyright and changelog, compressed manual pages, permissions, and no path in a binary to
# its libraries.
function(compress file)
  execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(usr ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
  set(doc ${usr}/share/doc/${package})
  if(NOT IS_DIRECTORY ${usr})
    message(FATAL_ERROR "${usr} is not there, so the files for Debian have no place")
  endif()
  file(MAKE_DIRECTORY ${doc})
  configure_file(${CPACK_ZEL_DEBIAN}/copyright ${doc}/copyright COPYONLY)
  configure_file(${CPACK_ZEL_DEBIAN}/changelog ${doc}/changelog.Debian COPYONLY)
  compress(${doc}/changelog.Debian)
  file(GLOB binaries ${usr}/bin/* ${usr}/${CPACK_ZEL_LIBRARIES}/lib*.so.*.*.*)
  foreach(binary ${binaries}) # where an installed path was meant to go, empty ones may be left, and they mean "here"
    file(RPATH_REMOVE FILE ${binary})
  endforeach()
  file(GLOB manuals ${usr}/share/man/man*/*.[1-8])
  foreach(manual ${manuals})
    compress(${manual})
  endforeach()
  # whatever the umask and the checkout made of them
  execute_process(COMMAND chmod -R u=rwX,go=rX ${usr} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
