# All dependencies. Debian 12 has them; nothing is downloaded.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui DBus Network Qml Quick Svg Widgets)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

pkg_check_modules(DBUS REQUIRED IMPORTED_TARGET dbus-1)
pkg_check_modules(FONTCONFIG REQUIRED IMPORTED_TARGET fontconfig)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET libplist-2.0)
pkg_check_modules(RSVG REQUIRED IMPORTED_TARGET librsvg-2.0)
# Without -pthread: the precompiled header is compiled without it, and the C library no longer needs it.
set_property(TARGET PkgConfig::RSVG PROPERTY INTERFACE_COMPILE_OPTIONS)
pkg_check_modules(SECCOMP REQUIRED IMPORTED_TARGET libseccomp)
pkg_check_modules(SODIUM REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
pkg_check_modules(XCB_SHM REQUIRED IMPORTED_TARGET xcb-shm)
pkg_check_modules(XCB_XINPUT REQUIRED IMPORTED_TARGET xcb-xinput)
pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)

if(AMBERQUILL_TESTS)
    find_package(GTest REQUIRED)
    find_package(ZLIB REQUIRED)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
    # The desktop-entry reader is ours; the tests hold its answers against GIO's.
    pkg_check_modules(GIO_UNIX REQUIRED IMPORTED_TARGET gio-unix-2.0)
endif()
if(AMBERQUILL_BENCHMARKS)
    find_package(benchmark REQUIRED)
endif()
