# What makes up the platform on macOS, seen from platform/.
set(orlimo_platform_sources
    files/macos/FileChangeDetector.cpp
    files/macos/DirectoryListing.mm
    threads/macos/DispatchQueues.mm
    files/macos/DispatchVnodeSource.mm
    loginitem/macos/ErrorConversion.mm
    files/macos/FileHandle.mm
    clipboard/macos/GeneralPasteboard.mm
    loginitem/macos/LaunchEvent.mm
    files/macos/LibraryFolder.mm
    loginitem/macos/MainAppService.mm
    threads/macos/MainDispatchQueue.cpp
    preferences/macos/StandardUserDefaults.mm
    process/macos/StringConversion.mm
    desktop/macos/SystemArguments.cpp
    process/macos/LoginItemLog.mm
    services/macos/Session.cpp
    threads/macos/UptimeClock.cpp
    files/GrowthDetector.cpp
    process/StandardStreams.cpp
    process/UserDatabase.cpp
    files/VnodeEventDelivery.cpp
    files/WalIndex.cpp
    threads/EventLoopQueue.cpp)
set(orlimo_desktop_sources
    menubar/macos/ActionTarget.mm
    desktop/macos/AppKitFrontWindow.mm
    desktop/macos/AppKitServices.mm
    desktop/macos/AppKitLifecycle.mm
    menubar/macos/BitmapImage.mm
    desktop/macos/CocoaSharedApplication.mm
    desktop/macos/ColorScheme.cpp
    threads/macos/DefaultModeCall.mm
    desktop/macos/FontPreloading.cpp
    menubar/macos/MenuBarImage.mm
    desktop/macos/NamedSymbol.mm
    desktop/macos/NotificationObserver.mm
    instance/macos/ReopenEvents.mm
    instance/macos/RunningInstance.mm
    desktop/macos/ScreenGeometry.mm
    menubar/macos/StatusItem.mm
    menubar/macos/StatusItemMenuBarExtra.mm
    desktop/macos/Workspace.mm
    instance/macos/ProcessLock.cpp
    desktop/ActivationObserver.cpp
    desktop/ApplicationActivity.cpp
    menubar/MenuBarWindow.cpp
    desktop/QtLifecycle.cpp
    menubar/WindowPlacement.cpp
    services/Services.cpp)
set(orlimo_platform_libraries
    "-framework AppKit"
    "-framework Foundation"
    "-framework ServiceManagement")
set(orlimo_desktop_libraries "-framework AppKit")
