# The Debian package: `cpack -G DEB` in a build folder, or scripts/package.sh.
set(CPACK_PACKAGE_NAME amberquill)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The Amberquill developers <amberquill@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Full-screen application launcher for X11 and Wayland")
set(CPACK_PACKAGE_DESCRIPTION
"Amberquill shows everything that is installed as large icons on pages that
turn with the wheel, the touchpad, the arrow keys or the dots. Typing searches;
icons are dragged to reorder them, onto each other to make folders, to the edge
to take them to another page.
.
It lists what the desktop has registered (the desktop entries of packages,
Flatpaks and Snaps) and application bundles, and speaks English, Italian,
Spanish, French, German, Chinese and Japanese.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
# The installation script gets the program's final path and the folder to write to.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time, so that the linker does not know them: QML modules, the window system's plugin, image readers, the
# translations of Qt's own dialogs.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qml6-module-qtqml-workerscript"
    "qml6-module-qtquick"
    "qt6-image-formats-plugins"
    "qt6-translations-l10n"
    "qt6-wayland")
list(JOIN CPACK_DEBIAN_PACKAGE_DEPENDS ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
# Feeds are fetched over HTTPS; the page of a new version opens in the browser.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "ca-certificates, dbus-user-session | dbus-session-bus, hicolor-icon-theme, xdg-utils")

include(CPack)
