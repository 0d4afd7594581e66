#include "platform/clipboard/linux/ClipboardRoute.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <ostream>
#include <string>

namespace orlimo {

void PrintTo(ClipboardRoute route, std::ostream* stream)
{
    switch (route) {
    case ClipboardRoute::toolkit:
        *stream << "toolkit";
        break;
    case ClipboardRoute::dataControl:
        *stream << "dataControl";
        break;
    case ClipboardRoute::dataControlOrXServer:
        *stream << "dataControlOrXServer";
        break;
    case ClipboardRoute::xServer:
        *stream << "xServer";
        break;
    case ClipboardRoute::focusedOnly:
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
    ClipboardRoute best;
};

void PrintTo(const Session& session, std::ostream* stream)
{
    *stream << session.name;
}

class ClipboardRouteTest : public testing::TestWithParam<Session>
{};

TEST_P(ClipboardRouteTest, IsTheBestOfTheSession)
{
    const Session& session = GetParam();
    EXPECT_EQ(
        bestClipboardRoute(
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
    ClipboardRouteTest,
    testing::Values(
        Session{"X11", none, false, notOffered, true, ClipboardRoute::toolkit},
        Session{"NoDisplay", none, false, notOffered, false, ClipboardRoute::toolkit},
        Session{"WaylandWithBoth", none, true, offered, true, ClipboardRoute::dataControl},
        Session{"WaylandAlone", none, true, offered, false, ClipboardRoute::dataControl},
        Session{"WaylandWithXServerOnly", none, true, notOffered, true, ClipboardRoute::xServer},
        Session{"WaylandWithNeither", none, true, notOffered, false, ClipboardRoute::focusedOnly},
        Session{
            "SilentWaylandWithXServer",
            none,
            true,
            unknown,
            true,
            ClipboardRoute::dataControlOrXServer},
        Session{"SilentWaylandAlone", none, true, unknown, false, ClipboardRoute::dataControl},
        Session{"ChosenSilentWayland", "wayland", true, unknown, true, ClipboardRoute::dataControl},
        Session{
            "ChosenXBesideSilentCompositor",
            "xcb",
            true,
            unknown,
            true,
            ClipboardRoute::dataControl},
        Session{"ChosenWayland", "wayland", true, offered, true, ClipboardRoute::dataControl},
        Session{
            "ChosenWaylandEgl", "wayland-egl", true, offered, true, ClipboardRoute::dataControl},
        Session{
            "ChosenWaylandWithXServerOnly",
            "wayland",
            true,
            notOffered,
            true,
            ClipboardRoute::focusedOnly},
        Session{
            "ChosenWaylandBeforeOthers",
            "wayland;xcb",
            true,
            notOffered,
            true,
            ClipboardRoute::focusedOnly},
        Session{"ChosenBothOnX11", "wayland;xcb", false, notOffered, true, ClipboardRoute::toolkit},
        Session{
            "ChosenXWithoutServer",
            "xcb;wayland",
            true,
            offered,
            false,
            ClipboardRoute::dataControl},
        Session{
            "ChosenXWithoutServerOrDataControl",
            "xcb;wayland",
            true,
            notOffered,
            false,
            ClipboardRoute::focusedOnly},
        Session{"ChosenXOnX11", "xcb", false, notOffered, true, ClipboardRoute::toolkit},
        Session{"ChosenXBesideCompositor", "xcb", true, offered, true, ClipboardRoute::dataControl},
        Session{
            "ChosenXWithOptions",
            "xcb:someoption;wayland",
            true,
            offered,
            true,
            ClipboardRoute::dataControl},
        Session{
            "ChosenXOnWaylandWithoutDataControl",
            "xcb",
            true,
            notOffered,
            true,
            ClipboardRoute::toolkit},
        Session{"ChosenOther", "offscreen", true, offered, true, ClipboardRoute::toolkit},
        Session{"ChosenOtherWithNeither", "vnc", true, notOffered, false, ClipboardRoute::toolkit}),
    [](const auto& instance) { return instance.param.name; });

TEST(ClipboardRouteQuestions, AreAskedOnlyWhereTheyMatter)
{
    int questions = 0;
    DesktopFacts facts{
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
    (void)bestClipboardRoute(facts);
    facts.chosenPlatform = "offscreen";
    facts.isWaylandSession = true;
    (void)bestClipboardRoute(facts);
    EXPECT_EQ(questions, 0);
    facts.chosenPlatform.reset();
    (void)bestClipboardRoute(facts);
    EXPECT_EQ(questions, 1) << "an X server is of no interest beside data control";
}

TEST(ClipboardRouteQuestions, WaitLongOnlyWhereThePlatformDependsOnTheResponse)
{
    std::optional<std::chrono::milliseconds> waited;
    DesktopFacts facts{
        .chosenPlatform = none,
        .isWaylandSession = true,
        .dataControl =
            [&](auto limit) {
                waited = limit;
                return unknown;
            },
        .hasXServer = [] { return true; }};
    (void)bestClipboardRoute(facts);
    EXPECT_EQ(waited, std::chrono::seconds(30));
    for (const char* platform : {"wayland", "xcb"}) {
        facts.chosenPlatform = platform;
        (void)bestClipboardRoute(facts);
        EXPECT_EQ(waited, std::chrono::seconds(2)) << platform;
    }
}

TEST(TakenClipboardRoute, IsTheToolkitsUntilOneIsTaken)
{
    EXPECT_EQ(takenClipboardRoute(), ClipboardRoute::toolkit);
    takeClipboardRoute(ClipboardRoute::dataControl);
    EXPECT_EQ(takenClipboardRoute(), ClipboardRoute::dataControl);
    takeClipboardRoute(ClipboardRoute::toolkit);
}

} // namespace
} // namespace orlimo
