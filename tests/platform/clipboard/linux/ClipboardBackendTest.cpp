#include "platform/clipboard/linux/ClipboardBackend.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <ostream>
#include <string>

namespace orlimo {

void PrintTo(ClipboardBackend route, std::ostream* stream)
{
    switch (route) {
    case ClipboardBackend::qt:
        *stream << "toolkit";
        break;
    case ClipboardBackend::dataControl:
        *stream << "dataControl";
        break;
    case ClipboardBackend::dataControlOrXServer:
        *stream << "dataControlOrXServer";
        break;
    case ClipboardBackend::xServer:
        *stream << "xServer";
        break;
    case ClipboardBackend::focusedOnly:
        *stream << "focusedOnly";
        break;
    }
}

namespace {

/// A session, and the route that is the best in it.
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

TEST_P(ClipboardBackendTest, IsTheBestOfTheSession)
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

INSTANTIATE_TEST_SUITE_P(
    Sessions,
    ClipboardBackendTest,
    testing::Values(
        Session{"X11", none, false, notOffered, true, ClipboardBackend::qt},
        Session{"NoDisplay", none, false, notOffered, false, ClipboardBackend::qt},
        Session{"WaylandWithBoth", none, true, offered, true, ClipboardBackend::dataControl},
        Session{"WaylandAlone", none, true, offered, false, ClipboardBackend::dataControl},
        Session{"WaylandWithXServerOnly", none, true, notOffered, true, ClipboardBackend::xServer},
        Session{"WaylandWithNeither", none, true, notOffered, false, ClipboardBackend::focusedOnly},
        Session{
            "SilentWaylandWithXServer",
            none,
            true,
            unknown,
            true,
            ClipboardBackend::dataControlOrXServer},
        Session{"SilentWaylandAlone", none, true, unknown, false, ClipboardBackend::dataControl},
        Session{
            "ChosenSilentWayland", "wayland", true, unknown, true, ClipboardBackend::dataControl},
        Session{
            "ChosenXBesideSilentCompositor",
            "xcb",
            true,
            unknown,
            true,
            ClipboardBackend::dataControl},
        Session{"ChosenWayland", "wayland", true, offered, true, ClipboardBackend::dataControl},
        Session{
            "ChosenWaylandEgl", "wayland-egl", true, offered, true, ClipboardBackend::dataControl},
        Session{
            "ChosenWaylandWithXServerOnly",
            "wayland",
            true,
            notOffered,
            true,
            ClipboardBackend::focusedOnly},
        Session{
            "ChosenWaylandBeforeOthers",
            "wayland;xcb",
            true,
            notOffered,
            true,
            ClipboardBackend::focusedOnly},
        Session{"ChosenBothOnX11", "wayland;xcb", false, notOffered, true, ClipboardBackend::qt},
        Session{
            "ChosenXWithoutServer",
            "xcb;wayland",
            true,
            offered,
            false,
            ClipboardBackend::dataControl},
        Session{
            "ChosenXWithoutServerOrDataControl",
            "xcb;wayland",
            true,
            notOffered,
            false,
            ClipboardBackend::focusedOnly},
        Session{"ChosenXOnX11", "xcb", false, notOffered, true, ClipboardBackend::qt},
        Session{
            "ChosenXBesideCompositor", "xcb", true, offered, true, ClipboardBackend::dataControl},
        Session{
            "ChosenXWithOptions",
            "xcb:someoption;wayland",
            true,
            offered,
            true,
            ClipboardBackend::dataControl},
        Session{
            "ChosenXOnWaylandWithoutDataControl",
            "xcb",
            true,
            notOffered,
            true,
            ClipboardBackend::qt},
        Session{"ChosenOther", "offscreen", true, offered, true, ClipboardBackend::qt},
        Session{"ChosenOtherWithNeither", "vnc", true, notOffered, false, ClipboardBackend::qt}),
    [](const auto& instance) { return instance.param.name; });

TEST(ClipboardBackendQueries, AreAskedOnlyWhereTheyMatter)
{
    int questions = 0;
    SessionCapabilities facts{
        .chosenPlatform = none,
        .isWaylandSession = false,
        .dataControl =
            [&](auto /*limit*/) {
                ++questions;
                return offered;
            },
        .hasXServer =
            [&] {
                ++questions;
                return true;
            }};
    (void)bestClipboardBackend(facts);
    facts.chosenPlatform = "offscreen";
    facts.isWaylandSession = true;
    (void)bestClipboardBackend(facts);
    EXPECT_EQ(questions, 0);
    facts.chosenPlatform.reset();
    (void)bestClipboardBackend(facts);
    EXPECT_EQ(questions, 1) << "an X server is of no interest beside data control";
}

TEST(ClipboardBackendQueries, WaitLongOnlyWhereThePlatformDependsOnTheResponse)
{
    std::optional<std::chrono::milliseconds> waited;
    SessionCapabilities facts{
        .chosenPlatform = none,
        .isWaylandSession = true,
        .dataControl =
            [&](auto limit) {
                waited = limit;
                return unknown;
            },
        .hasXServer = [] { return true; }};
    (void)bestClipboardBackend(facts);
    EXPECT_EQ(waited, std::chrono::seconds(30));
    for (const char* platform : {"wayland", "xcb"}) {
        facts.chosenPlatform = platform;
        (void)bestClipboardBackend(facts);
        EXPECT_EQ(waited, std::chrono::seconds(2)) << platform;
    }
}

} // namespace
} // namespace orlimo
