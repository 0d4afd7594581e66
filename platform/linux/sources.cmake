# What makes up the platform on Linux, seen from platform/.
find_package(PkgConfig REQUIRED)
pkg_check_modules(WaylandClient REQUIRED IMPORTED_TARGET GLOBAL wayland-client)
pkg_check_modules(Xcb REQUIRED IMPORTED_TARGET GLOBAL xcb)
set(orlimo_platform_libraries PkgConfig::WaylandClient PkgConfig::Xcb Qt6::DBus)
set(orlimo_platform_sources
    linux/AutostartEntry.cpp
    linux/AutostartPortal.cpp
    linux/BooleanValue.cpp
    linux/ClipboardPasteboard.cpp
    linux/ClipboardRoute.cpp
    linux/DataControlClipboard.cpp
    linux/DataControlConnection.cpp
    linux/DataControlDevice.cpp
    linux/DataControlPasteboard.cpp
    linux/DataControlProtocol.cpp
    linux/DataControlSource.cpp
    linux/DescriptorNotifier.cpp
    linux/DesktopEntry.cpp
    linux/DirectoryListing.cpp
    linux/EnvironmentVariable.cpp
    posix/FatalStop.cpp
    linux/FileHandle.cpp
    linux/GeneralPasteboard.cpp
    posix/GrowthMeter.cpp
    linux/InotifyVnodeSource.cpp
    linux/LaunchEvent.cpp
    linux/LibraryFolder.cpp
    posix/LogLine.cpp
    linux/MainAppService.cpp
    linux/MainThread.cpp
    linux/PortalLoginItemService.cpp
    linux/QtQueues.cpp
    linux/QtUserDefaults.cpp
    linux/RunningProgram.cpp
    posix/StandardStreams.cpp
    posix/StoreWriteLock.cpp
    linux/SyslogUnifiedLog.cpp
    linux/TextTransfer.cpp
    linux/TextTransfers.cpp
    linux/ToolkitArguments.cpp
    linux/UptimeClock.cpp
    posix/UserDatabase.cpp
    linux/WaylandDisplay.cpp
    linux/WaylandRegistry.cpp
    linux/XdgLoginItemService.cpp)
set(orlimo_desktop_sources
    linux/AboutPanel.cpp
    qt/ActivationObserver.cpp
    linux/ActivationToken.cpp
    qt/ApplicationActivity.cpp
    linux/ApplicationInterface.cpp
    linux/DBusApplicationInstance.cpp
    qt/MenuBarWindow.cpp
    linux/PanelIcon.cpp
    linux/QtScreen.cpp
    linux/QtSharedApplication.cpp
    linux/QtWorkspace.cpp
    linux/SessionBus.cpp
    linux/StatusNotifierHosts.cpp
    linux/SvgSystemSymbol.cpp
    linux/SystemTraySelection.cpp
    qt/ToolkitTurns.cpp
    linux/TrayHost.cpp
    linux/TrayIcon.cpp
    linux/TrayMenuBarExtra.cpp
    qt/WindowPlacement.cpp)
set(orlimo_desktop_libraries Qt6::DBus PkgConfig::Xcb)
