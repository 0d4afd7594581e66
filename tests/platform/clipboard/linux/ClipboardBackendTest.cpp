#include "platform/clipboard/linux/ClipboardBackend.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

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

TEST(ClipboardBackendQueries, AreMadeOnlyIfTheyMatterAndWaitLongOnlyForQtsPlatform)
{
    using Wait = std::optional<std::chrono::milliseconds>;
    struct Case
    {
        std::optional<std::string> platform;
        bool isWaylandSession;
        Wait expected;
    };
    for (const Case& session : std::vector<Case>{
             {none, false, none},
             {"offscreen", true, none},
             {none, true, std::chrono::seconds(30)},
             {"wayland", true, std::chrono::seconds(2)},
             {"xcb", true, std::chrono::seconds(2)}})
    {
        Wait waited;
        int serverQueries = 0;
        (void)bestClipboardBackend(
            {.chosenPlatform = session.platform,
             .isWaylandSession = session.isWaylandSession,
             .dataControl =
                 [&](auto limit) {
                     waited = limit;
                     return offered;
                 },
             .hasXServer = [&] { return ++serverQueries > 0; }});
        EXPECT_EQ(waited, session.expected);
        EXPECT_EQ(serverQueries, 0) << "an X server does not matter beside data control";
    }
}

} // namespace
} // namespace orlimo
