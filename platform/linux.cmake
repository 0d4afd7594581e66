# What makes up the platform on Linux, seen from platform/.
find_package(PkgConfig REQUIRED)
pkg_check_modules(GLib REQUIRED IMPORTED_TARGET GLOBAL glib-2.0)
# Some systems' GLib asks for -pthread, by which a source would no longer fit the precompiled headers.
set_property(TARGET PkgConfig::GLib PROPERTY INTERFACE_COMPILE_OPTIONS "")
pkg_check_modules(WaylandClient REQUIRED IMPORTED_TARGET GLOBAL wayland-client)
pkg_check_modules(Xcb REQUIRED IMPORTED_TARGET GLOBAL xcb)
set(orlimo_platform_libraries PkgConfig::GLib PkgConfig::WaylandClient PkgConfig::Xcb Qt6::DBus)
set(orlimo_platform_sources
    loginitem/linux/AutostartEntry.cpp
    loginitem/linux/AutostartPortal.cpp
    preferences/linux/KeyFile.cpp
    clipboard/linux/ClipboardPasteboard.cpp
    clipboard/linux/ClipboardBackend.cpp
    clipboard/linux/DataControlClipboard.cpp
    clipboard/linux/DataControlConnection.cpp
    clipboard/linux/DataControlDevice.cpp
    clipboard/linux/DataControlPasteboard.cpp
    clipboard/linux/DataControlProtocol.cpp
    clipboard/linux/DataControlSource.cpp
    clipboard/linux/DescriptorNotifier.cpp
    files/linux/DirectoryListing.cpp
    files/linux/FileContent.cpp
    files/linux/FileHandle.cpp
    clipboard/linux/GeneralPasteboard.cpp
    files/GrowthDetector.cpp
    files/linux/InotifyVnodeSource.cpp
    loginitem/linux/LaunchEvent.cpp
    files/linux/UserFolders.cpp
    loginitem/linux/MainAppService.cpp
    loginitem/linux/PortalLoginItemService.cpp
    threads/linux/QtQueues.cpp
    preferences/linux/QtUserDefaults.cpp
    loginitem/linux/RunningProgram.cpp
    bus/linux/SessionBusProbe.cpp
    preferences/linux/SettingsFile.cpp
    preferences/linux/SettingsValue.cpp
    process/StandardStreams.cpp
    process/linux/LoginItemLog.cpp
    desktop/linux/SystemArguments.cpp
    clipboard/linux/TextTransfers.cpp
    services/linux/Session.cpp
    threads/linux/UptimeClock.cpp
    process/UserDatabase.cpp
    files/VnodeEventDelivery.cpp
    files/WalIndex.cpp
    threads/EventLoopQueue.cpp
    display/linux/WaylandDisplay.cpp
    display/linux/WaylandRegistry.cpp
    display/linux/WaylandRoundTrip.cpp
    loginitem/linux/XdgLoginItemService.cpp)
set(orlimo_desktop_sources
    desktop/linux/AboutPanel.cpp
    desktop/ActivationObserver.cpp
    desktop/linux/ActivationToken.cpp
    desktop/ApplicationActivity.cpp
    instance/linux/ApplicationInterface.cpp
    desktop/linux/ColorSchemePortal.cpp
    instance/linux/DBusApplicationInstance.cpp
    menubar/MenuBarWindow.cpp
    desktop/linux/PaletteScheme.cpp
    menubar/linux/PanelIcon.cpp
    desktop/linux/FontPreloading.cpp
    desktop/linux/QtSharedApplication.cpp
    desktop/linux/QtWorkspace.cpp
    bus/linux/SessionBus.cpp
    menubar/linux/StatusNotifierHosts.cpp
    desktop/linux/SvgSystemSymbol.cpp
    menubar/linux/SystemTraySelection.cpp
    desktop/QtLifecycle.cpp
    menubar/linux/TrayBackground.cpp
    menubar/linux/SystemTray.cpp
    menubar/linux/TrayIcon.cpp
    menubar/linux/TrayMenuBarExtra.cpp
    menubar/linux/WaylandFocus.cpp
    display/linux/X11Connection.cpp
    menubar/linux/X11Focus.cpp
    menubar/WindowPlacement.cpp
    services/Services.cpp)
set(orlimo_desktop_libraries Qt6::DBus PkgConfig::Xcb)
