#include "platform/clipboard/linux/ClipboardBackend.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <ostream>
#include <string>

namespace orlimo {

namespace {

/// A session and its best backend.
struct Session
{
    std::string name;
    std::optional<std::string> chosenPlatform;
    bool isWaylandSession;
    DataControlAvailability dataControl;
    bool hasXServer;
    ClipboardBackend best;
};

void PrintTo(const Session& session, std::ostream* stream)
{
    *stream << session.name;
}

class ClipboardBackendTest : public testing::TestWithParam<Session>
{};

TEST_P(ClipboardBackendTest, FitsTheSession)
{
    const Session& session = GetParam();
    EXPECT_EQ(
        bestClipboardBackend(
            {.chosenPlatform = session.chosenPlatform,
             .isWaylandSession = session.isWaylandSession,
             .dataControl = [&](auto /*limit*/) { return session.dataControl; },
             .hasXServer = [&] { return session.hasXServer; }}),
        session.best);
}

constexpr auto none = std::nullopt;

constexpr auto offered = DataControlAvailability::offered;
constexpr auto notOffered = DataControlAvailability::notOffered;
constexpr auto unknown = DataControlAvailability::unknown;

constexpr auto qt = ClipboardBackend::qt;
constexpr auto dataControl = ClipboardBackend::dataControl;
constexpr auto dataControlOrXServer = ClipboardBackend::dataControlOrXServer;
constexpr auto xServer = ClipboardBackend::xServer;
constexpr auto focusedOnly = ClipboardBackend::focusedOnly;

INSTANTIATE_TEST_SUITE_P(
    Sessions,
    ClipboardBackendTest,
    testing::Values(
        Session{"X11", none, false, notOffered, true, qt},
        Session{"NoDisplay", none, false, notOffered, false, qt},
        Session{"WaylandWithBoth", none, true, offered, true, dataControl},
        Session{"WaylandAlone", none, true, offered, false, dataControl},
        Session{"WaylandWithXServerOnly", none, true, notOffered, true, xServer},
        Session{"WaylandWithNeither", none, true, notOffered, false, focusedOnly},
        Session{"SilentWaylandWithXServer", none, true, unknown, true, dataControlOrXServer},
        Session{"SilentWaylandAlone", none, true, unknown, false, dataControl},
        Session{"ChosenSilentWayland", "wayland", true, unknown, true, dataControl},
        Session{"ChosenXOnSilentWayland", "xcb", true, unknown, true, dataControl},
        Session{"ChosenWayland", "wayland", true, offered, true, dataControl},
        Session{"ChosenWaylandEgl", "wayland-egl", true, offered, true, dataControl},
        Session{"ChosenWaylandXServerOnly", "wayland", true, notOffered, true, focusedOnly},
        Session{"ChosenWaylandFirst", "wayland;xcb", true, notOffered, true, focusedOnly},
        Session{"ChosenBothOnX11", "wayland;xcb", false, notOffered, true, qt},
        Session{"ChosenXWithoutServer", "xcb;wayland", true, offered, false, dataControl},
        Session{"ChosenXWithNeither", "xcb;wayland", true, notOffered, false, focusedOnly},
        Session{"ChosenXOnX11", "xcb", false, notOffered, true, qt},
        Session{"ChosenXOnWayland", "xcb", true, offered, true, dataControl},
        Session{"ChosenXWithOptions", "xcb:option;wayland", true, offered, true, dataControl},
        Session{"ChosenXWithoutDataControl", "xcb", true, notOffered, true, qt},
        Session{"ChosenOther", "offscreen", true, offered, true, qt},
        Session{"ChosenOtherWithNeither", "vnc", true, notOffered, false, qt}),
    [](const auto& instance) { return instance.param.name; });

TEST(ClipboardBackendQueries, AreMadeOnlyIfTheyMatter)
{
    int queries = 0;
    SessionCapabilities capabilities{
        .chosenPlatform = none,
        .isWaylandSession = false,
        .dataControl =
            [&](auto /*limit*/) {
                ++queries;
                return offered;
            },
        .hasXServer =
            [&] {
                ++queries;
                return true;
            }};
    (void)bestClipboardBackend(capabilities);
    capabilities.chosenPlatform = "offscreen";
    capabilities.isWaylandSession = true;
    (void)bestClipboardBackend(capabilities);
    EXPECT_EQ(queries, 0);
    capabilities.chosenPlatform.reset();
    (void)bestClipboardBackend(capabilities);
    EXPECT_EQ(queries, 1) << "an X server does not matter beside data control";
}

TEST(ClipboardBackendQueries, WaitLongOnlyIfThePlatformDependsOnTheResponse)
{
    std::optional<std::chrono::milliseconds> waited;
    SessionCapabilities capabilities{
        .chosenPlatform = none,
        .isWaylandSession = true,
        .dataControl =
            [&](auto limit) {
                waited = limit;
                return unknown;
            },
        .hasXServer = [] { return true; }};
    (void)bestClipboardBackend(capabilities);
    EXPECT_EQ(waited, std::chrono::seconds(30));
    for (const char* platform : {"wayland", "xcb"}) {
        capabilities.chosenPlatform = platform;
        (void)bestClipboardBackend(capabilities);
        EXPECT_EQ(waited, std::chrono::seconds(2)) << platform;
    }
}

} // namespace
} // namespace orlimo
