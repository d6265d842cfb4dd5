# The reference library of the ICS format, which brings no package file of its own. For the tests alone.
find_path(Ics_INCLUDE_DIR libics.h)
find_library(Ics_LIBRARY ics)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Ics REQUIRED_VARS Ics_LIBRARY Ics_INCLUDE_DIR)
if(Ics_FOUND AND NOT TARGET Ics::Ics)
  add_library(Ics::Ics UNKNOWN IMPORTED)
  set_target_properties(Ics::Ics PROPERTIES
    IMPORTED_LOCATION "${Ics_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${Ics_INCLUDE_DIR}")
endif()
mark_as_advanced(Ics_INCLUDE_DIR Ics_LIBRARY)
