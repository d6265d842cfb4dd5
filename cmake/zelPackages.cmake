# What cpack makes of the installed components: the Debian packages of a build that is configured for /usr. tools/package
# calls and checks it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zel)
set(CPACK_PACKAGE_CONTACT "The zel authors <zel@zel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL library development viewer documentation)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(CPACK_DEBIAN_PACKAGE_RELEASE 0local1) # a package of a distribution, from 1 on, takes its place
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE zel)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
set(library_package libzel${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "viewer library for 3D and 4D microscope images
zel shows the XY, XZ and YZ cuts through a stack of microscope images side by
side, exact to the voxel, with labels over them, the whole stack in space, and
the value under the pointer. It is embedded in programs on wxWidgets.
.
This package has the shared libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${version}), libwxgtk3.2-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libzel-doc)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "viewer library for 3D and 4D microscope images (development files)
zel shows the XY, XZ and YZ cuts through a stack of microscope images side by
side, exact to the voxel, with labels over them, the whole stack in space, and
the value under the pointer. It is embedded in programs on wxWidgets.
.
This package has the headers, and the files for CMake and pkg-config.")

set(CPACK_DEBIAN_VIEWER_PACKAGE_NAME zelviewer)
set(CPACK_DEBIAN_VIEWER_PACKAGE_SECTION science)
set(CPACK_DEBIAN_VIEWER_PACKAGE_DEPENDS "${library_package} (= ${version})")
set(CPACK_DEBIAN_VIEWER_PACKAGE_SUGGESTS libzel-doc)
set(CPACK_DEBIAN_VIEWER_DESCRIPTION "viewer for 3D and 4D microscope images
zelviewer shows the XY, XZ and YZ cuts through a stack of microscope images
side by side, exact to the voxel. It maps values by stretches, thresholds and
palettes, lays labels over the picture, shows the volume in space, plays
sequences, and saves views, galleries, films and meshes, also from scripts.
.
It reads TIFF, OME-TIFF, ImageJ hyperstacks and ICS files.")

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME libzel-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION "viewer for 3D and 4D microscope images (guides and examples)
zel shows the XY, XZ and YZ cuts through a stack of microscope images side by
side. zelviewer is the program, libzel the library for programs of one's own.
.
This package has the user's guide, a description of the design, and examples of
programs that embed the library.")

# Files that are for Debian alone are put beside the installed ones just before they are packed.
set(CPACK_ZEL_DEBIAN ${PROJECT_SOURCE_DIR}/packaging/debian)
set(CPACK_ZEL_LIBRARIES ${CMAKE_INSTALL_LIBDIR})
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/zelDebianFiles.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/zelDebianScripts.cmake)
include(CPack)
