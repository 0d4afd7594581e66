# The whole program as a black box, alone and on desktops of its own.
find_package(Qt6 6.4.2 REQUIRED COMPONENTS DBus)
find_package(X11 REQUIRED COMPONENTS ICE SM xcb)
pkg_check_modules(XcbXfixes REQUIRED IMPORTED_TARGET xcb-xfixes)

add_library(orlimo_program_session STATIC ../program/ProgramSession.cpp ../desktop/sessions/x11/XServer.cpp)
target_link_libraries(orlimo_program_session PUBLIC orlimo_test_support)
target_compile_definitions(orlimo_program_session PRIVATE ORLIMO_PROGRAM_OF_SESSION="$<TARGET_FILE:orlimo>")

add_library(orlimo_desktop_session STATIC
    ../desktop/sessions/AccessibilityTree.cpp
    Accessible.cpp
    ../desktop/sessions/DesktopProgram.cpp
    ../desktop/sessions/DesktopSession.cpp
    ../desktop/sessions/DesktopVariables.cpp
    ../desktop/sessions/SessionBuses.cpp
    ../desktop/sessions/x11/OpenboxConfiguration.cpp
    ../desktop/sessions/StatusNotifierPanel.cpp
    ../desktop/sessions/x11/XInput.cpp
    ../desktop/sessions/x11/XWindows.cpp)
target_link_libraries(orlimo_desktop_session PUBLIC orlimo_program_session Qt6::DBus X11::xcb)
target_compile_definitions(orlimo_desktop_session PRIVATE
    ORLIMO_TEST_PANEL="$<TARGET_FILE:orlimo-test-panel>")
add_dependencies(orlimo_desktop_session orlimo-test-panel)

add_executable(orlimo-test-panel ../desktop/sessions/x11/PanelProgram.cpp ../desktop/sessions/StatusNotifierWatcher.cpp)
target_link_libraries(orlimo-test-panel PRIVATE orlimo_options Qt6::DBus)
set_target_properties(orlimo-test-panel PROPERTIES AUTOMOC ON)

orlimo_add_tests(orlimo_program_tests
    LABEL e2e
    SOURCES
        ../capture/stores/StoreLock.cpp
        ../platform/files/ForeignLock.cpp
        ../desktop/ClipboardTest.cpp
        ../program/FaultTest.cpp
        ../program/MessageFlowTest.cpp
        ../desktop/sessions/x11/SelectionOwnerChanges.cpp
        ../program/StartUpTest.cpp
        ../program/UsageTest.cpp
        linux/FontPreloadingTest.cpp
        linux/StoredPreferences.cpp
    LIBRARIES orlimo_program_session SQLite::SQLite3 X11::xcb PkgConfig::XcbXfixes
    NEEDS orlimo orlimo-sample-store)

orlimo_add_tests(orlimo_whole_program_tests
    LABEL e2e
    ON x11-with-trayer
    SOURCES ../platform/loginitem/linux/ScriptedPortal.cpp ../program/GuidanceTest.cpp ../program/LoginItemTest.cpp ../desktop/UserJourneyTest.cpp ../desktop/WindowTest.cpp
    LIBRARIES orlimo_desktop_session Qt6::DBus
    NEEDS orlimo orlimo-sample-store)

orlimo_add_tests(orlimo_sandbox_tests
    LABEL e2e
    SOURCES ../platform/loginitem/linux/ScriptedPortal.cpp ../program/Sandbox.cpp ../program/SandboxTest.cpp
    LIBRARIES orlimo_program_session Qt6::DBus
    NEEDS orlimo orlimo-sample-store)

# Whole Wayland desktops.
add_library(orlimo_wayland_session STATIC
    ../desktop/sessions/wayland/KWinSession.cpp
    ../desktop/sessions/MissingProgram.cpp
    ../desktop/sessions/wayland/MutterClipboard.cpp
    ../desktop/sessions/wayland/MutterSession.cpp
    ../desktop/sessions/PlatformPlugin.cpp
    ../desktop/sessions/wayland/SwaySession.cpp
    ../desktop/sessions/TrayItems.cpp
    ../desktop/sessions/wayland/WaylandClipboard.cpp)
target_link_libraries(orlimo_wayland_session PUBLIC orlimo_desktop_session)
orlimo_define_program_path(ORLIMO_CLIPBOARD_PROBE orlimo-clipboard-probe
    IN ../desktop/KWinTest.cpp ../desktop/MutterTest.cpp ../desktop/SwayClipboardTest.cpp)
orlimo_define_program_path(ORLIMO_DESKTOP_PROBE orlimo-desktop-probe IN ../desktop/sessions/wayland/SwaySession.cpp)

orlimo_add_tests(orlimo_sway_tests
    LABEL desktop
    ON wayland-sway
    SOURCES ../desktop/SwayClipboardTest.cpp ../desktop/SwayWindowTest.cpp
    LIBRARIES orlimo_wayland_session
    NEEDS orlimo orlimo-clipboard-probe orlimo-desktop-probe orlimo-sample-store)

orlimo_add_tests(orlimo_mutter_tests
    LABEL desktop
    ON wayland-mutter
    SOURCES ../desktop/MutterTest.cpp
    LIBRARIES orlimo_wayland_session
    NEEDS orlimo orlimo-clipboard-probe orlimo-sample-store)

orlimo_add_tests(orlimo_kwin_tests
    LABEL desktop
    ON wayland-kwin
    SOURCES ../desktop/KWinTest.cpp
    LIBRARIES orlimo_wayland_session
    NEEDS orlimo orlimo-clipboard-probe orlimo-sample-store)

# One program in a session: every start of a second one.
orlimo_add_tests(orlimo_instance_tests
    LABEL desktop
    ON x11-with-trayer
    SOURCES ../program/InstanceTest.cpp ../desktop/InstanceOnDesktopTest.cpp ../desktop/SavedSessionTest.cpp ../desktop/sessions/SessionManager.cpp
    LIBRARIES orlimo_desktop_session X11::ICE X11::SM
    NEEDS orlimo orlimo-sample-store)
target_compile_definitions(orlimo_instance_tests PRIVATE
    ORLIMO_SERVICE_TEMPLATE="${PROJECT_SOURCE_DIR}/packaging/linux/app.orlimo.Orlimo.service.in")

orlimo_add_tests(orlimo_delivery_tests
    LABEL slow
    SOURCES ../program/DeliveryTest.cpp ../desktop/sessions/PlatformPlugin.cpp ../desktop/SilentCompositorTest.cpp
    LIBRARIES orlimo_program_session Threads::Threads
    NEEDS orlimo orlimo-sample-store orlimo_slow_disk)
orlimo_define_program_path(ORLIMO_SLOW_DISK orlimo_slow_disk IN ../program/DeliveryTest.cpp)

# A program of its own, in which nothing is painted before the tests fork: the toolkit's painting
# threads do not come along into a child.
orlimo_add_tests(orlimo_application_tests
    LABEL ui
    WIDGETS
    SOURCES OrlimoAppTest.cpp
    LIBRARIES orlimo_view_test_base)
