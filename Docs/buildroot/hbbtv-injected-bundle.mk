# The bundle from its source archive, which lies beside this file, in package/hbbtv-injected-bundle.
HBBTV_INJECTED_BUNDLE_VERSION = 1.0.0
HBBTV_INJECTED_BUNDLE_SOURCE = hbbtv-injected-bundle-$(HBBTV_INJECTED_BUNDLE_VERSION).tar.xz
HBBTV_INJECTED_BUNDLE_SITE = $(HBBTV_INJECTED_BUNDLE_PKGDIR)
HBBTV_INJECTED_BUNDLE_SITE_METHOD = file
HBBTV_INJECTED_BUNDLE_LICENSE = BSD-2-Clause, Apache-2.0 (mutation-summary)
HBBTV_INJECTED_BUNDLE_LICENSE_FILES = LICENSE LICENSES/Apache-2.0.txt
# Of host-libglib2 the D-Bus code generator; of webkitgtk the script engine.
HBBTV_INJECTED_BUNDLE_DEPENDENCIES = host-libglib2 host-pkgconf libglib2 webkitgtk
HBBTV_INJECTED_BUNDLE_CONF_OPTS = \
	-DHBBTV_DESKTOP_HOST=OFF \
	-DHBBTV_TESTS=OFF \
	-DHBBTV_DEBUG_SOCKET=OFF \
	-DHBBTV_JSC_PACKAGE=javascriptcoregtk-4.1

$(eval $(cmake-package))
