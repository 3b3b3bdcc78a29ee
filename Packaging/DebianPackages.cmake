# One Debian package a component. Libraries that programs link are found by dpkg-shlibdeps; what is opened while they run
# stands here.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME hbbtv-injected-bundle)
set(CPACK_PACKAGE_CONTACT ${HBBTV_MAINTAINER})
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(this_version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")

set(CPACK_DEBIAN_BUNDLE_PACKAGE_NAME ${bundle_package})
set(CPACK_DEBIAN_BUNDLE_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_BUNDLE_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_BUNDLE_DESCRIPTION "HbbTV objects for pages, an injected bundle of WebKit
A library that a television's browser loads into its web process. It gives
HbbTV pages the objects that they expect; every operation of theirs is a
D-Bus call to the receiver's middleware.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${dev_package})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${bundle_package} (= ${this_version})")
set(CPACK_DEBIAN_DEV_PACKAGE_SUGGESTS "python3-gi")
set(CPACK_COMPONENT_DEV_DESCRIPTION "HbbTV objects for pages, development files
What is needed to build a middleware or a loader for the HbbTV injected
bundle, or a page: the descriptions of its D-Bus interfaces, a middleware in
Python as an example, the header of the carousel's loader, declarations for
TypeScript.")

set(CPACK_DEBIAN_SHELL_PACKAGE_NAME ${shell_package})
set(CPACK_DEBIAN_SHELL_PACKAGE_SECTION web)
set(CPACK_DEBIAN_SHELL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_SHELL_PACKAGE_DEPENDS "${bundle_package} (= ${this_version}), dbus-daemon, \
gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, gstreamer1.0-plugins-bad, gstreamer1.0-libav")
set(CPACK_DEBIAN_SHELL_PACKAGE_RECOMMENDS "fonts-dejavu-core")
set(CPACK_DEBIAN_SHELL_PACKAGE_SUGGESTS "hbbtv-injected-bundle-dev, webkit2gtk-driver, xvfb, xauth")
set(CPACK_COMPONENT_SHELL_DESCRIPTION "television browser for HbbTV pages, with a simulated receiver
Shows HbbTV pages on a desktop, with the same injected bundle that a
television runs, before a receiver whose channels, programmes and settings
come from a file. Demo applications are included.")
include(CPack)
