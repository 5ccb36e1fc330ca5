# What CPack needs to know for the Debian package. build.sh calls it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tracelyn)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Only what has no component, not what programs are built with.
set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};${PROJECT_NAME};Unspecified;/")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# Between the installation into its folder and the archive of that.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/complete.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The font that everything is measured for; and for the first picture of a new system.
set(CPACK_DEBIAN_PACKAGE_DEPENDS fonts-dejavu-core)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "desktop-file-utils, hicolor-icon-theme, shared-mime-info")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qt6-wayland")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "viewer for recordings of press brakes")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tracelyn opens the recording of one bending movement of a press brake, draws
its signals as a stack of bands and lets you measure in them with two cursors.

tracelyn-cli does the same without a window: pictures, tables, figures and
comparisons of one recording or of many.")

include(CPack)
