# What makes up the platform on macOS, seen from platform/.
set(orlimo_platform_sources
    macos/ChangeMeter.cpp
    macos/DirectoryListing.mm
    macos/DispatchQueues.mm
    macos/DispatchVnodeSource.mm
    macos/ErrorConversion.mm
    macos/FileHandle.mm
    macos/GeneralPasteboard.mm
    macos/LaunchEvent.mm
    macos/LibraryFolder.mm
    macos/MainAppService.mm
    macos/MainDispatchQueue.cpp
    macos/MainThread.cpp
    macos/StandardUserDefaults.mm
    macos/StringConversion.mm
    macos/SystemUnifiedLog.mm
    macos/ToolkitArguments.cpp
    macos/UptimeClock.cpp
    posix/FatalStop.cpp
    posix/FilledIn.cpp
    posix/GrowthDetector.cpp
    posix/JournalStream.cpp
    posix/LogLine.cpp
    posix/StandardStreams.cpp
    posix/UserDatabase.cpp
    posix/VnodeEventDelivery.cpp
    posix/WalIndex.cpp
    qt/EventLoopQueue.cpp)
set(orlimo_desktop_sources
    macos/ActionTarget.mm
    macos/AppKitFrontWindow.mm
    macos/AppKitHost.mm
    macos/AppKitTurns.mm
    macos/BitmapImage.mm
    macos/CocoaSharedApplication.mm
    macos/ColorScheme.cpp
    macos/MainScreen.mm
    macos/MenuBarImage.mm
    macos/NamedSymbol.mm
    macos/NotificationObserver.mm
    macos/ReopenEvents.mm
    macos/RunningInstance.mm
    macos/ScreenGeometry.mm
    macos/StatusItem.mm
    macos/StatusItemMenuBarExtra.mm
    macos/Workspace.mm
    posix/ProcessLock.cpp
    qt/ActivationObserver.cpp
    qt/ApplicationActivity.cpp
    qt/MenuBarWindow.cpp
    qt/ToolkitTurns.cpp
    qt/WindowPlacement.cpp)
set(orlimo_platform_libraries
    "-framework AppKit"
    "-framework Foundation"
    "-framework ServiceManagement")
set(orlimo_desktop_libraries "-framework AppKit")
