# The bundle from its source archive, which lies beside this recipe in the folder "files".
SUMMARY = "HbbTV's JavaScript objects for WebKit, as an injected bundle"
SECTION = "libs"
LICENSE = "BSD-2-Clause & Apache-2.0"
LIC_FILES_CHKSUM = "file://LICENSE;md5=795d448b932fa180227b7175babea65d \
                    file://LICENSES/Apache-2.0.txt;md5=3b83ef96387f14655fc854ddc3c6bd57"

PV = "1.0.0"
SRC_URI = "file://hbbtv-injected-bundle-${PV}.tar.xz"
S = "${WORKDIR}/hbbtv-injected-bundle-${PV}"

# Of glib-2.0-native the D-Bus code generator; of webkitgtk the script engine.
DEPENDS = "glib-2.0 glib-2.0-native webkitgtk"

inherit cmake pkgconfig

EXTRA_OECMAKE = "-DHBBTV_DESKTOP_HOST=OFF -DHBBTV_TESTS=OFF -DHBBTV_DEBUG_SOCKET=OFF \
                 -DHBBTV_JSC_PACKAGE=javascriptcoregtk-4.1"

# A module that is loaded by its path, not a library that is linked.
FILES:${PN} += "${libdir}/hbbtv/*.so"
FILES:${PN}-dev += "${datadir}/dbus-1/interfaces ${datadir}/hbbtv"
