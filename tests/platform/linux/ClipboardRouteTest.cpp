#include "platform/linux/ClipboardRoute.h"

#include <gtest/gtest.h>

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
    bool offersDataControl;
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
             .offersDataControl = [&] { return session.offersDataControl; },
             .hasXServer = [&] { return session.hasXServer; }}),
        session.best);
}

constexpr auto none = std::nullopt;

INSTANTIATE_TEST_SUITE_P(
    Sessions,
    ClipboardRouteTest,
    testing::Values(
        Session{"X11", none, false, false, true, ClipboardRoute::toolkit},
        Session{"NoDisplay", none, false, false, false, ClipboardRoute::toolkit},
        Session{"WaylandWithBoth", none, true, true, true, ClipboardRoute::dataControl},
        Session{"WaylandAlone", none, true, true, false, ClipboardRoute::dataControl},
        Session{"WaylandWithXServerOnly", none, true, false, true, ClipboardRoute::xServer},
        Session{"WaylandWithNeither", none, true, false, false, ClipboardRoute::focusedOnly},
        Session{"ChosenWayland", "wayland", true, true, true, ClipboardRoute::dataControl},
        Session{"ChosenWaylandEgl", "wayland-egl", true, true, true, ClipboardRoute::dataControl},
        Session{
            "ChosenWaylandWithXServerOnly",
            "wayland",
            true,
            false,
            true,
            ClipboardRoute::focusedOnly},
        Session{
            "ChosenWaylandBeforeOthers",
            "wayland;xcb",
            true,
            false,
            true,
            ClipboardRoute::focusedOnly},
        Session{"ChosenBothOnX11", "wayland;xcb", false, false, true, ClipboardRoute::toolkit},
        Session{
            "ChosenXWithoutServer", "xcb;wayland", true, true, false, ClipboardRoute::dataControl},
        Session{
            "ChosenXWithoutServerOrDataControl",
            "xcb;wayland",
            true,
            false,
            false,
            ClipboardRoute::focusedOnly},
        Session{"ChosenXOnX11", "xcb", false, false, true, ClipboardRoute::toolkit},
        Session{"ChosenXBesideCompositor", "xcb", true, true, true, ClipboardRoute::dataControl},
        Session{
            "ChosenXWithOptions",
            "xcb:someoption;wayland",
            true,
            true,
            true,
            ClipboardRoute::dataControl},
        Session{
            "ChosenXOnWaylandWithoutDataControl",
            "xcb",
            true,
            false,
            true,
            ClipboardRoute::toolkit},
        Session{"ChosenOther", "offscreen", true, true, true, ClipboardRoute::toolkit},
        Session{"ChosenOtherWithNeither", "vnc", true, false, false, ClipboardRoute::toolkit}),
    [](const auto& instance) { return instance.param.name; });

TEST(ClipboardRouteQuestions, AreAskedOnlyWhereTheyMatter)
{
    int questions = 0;
    const auto count = [&questions] {
        ++questions;
        return true;
    };
    DesktopFacts facts{
        .chosenPlatform = none,
        .isWaylandSession = false,
        .offersDataControl = count,
        .hasXServer = count};
    (void)bestClipboardRoute(facts);
    facts.chosenPlatform = "offscreen";
    facts.isWaylandSession = true;
    (void)bestClipboardRoute(facts);
    EXPECT_EQ(questions, 0);
    facts.chosenPlatform.reset();
    (void)bestClipboardRoute(facts);
    EXPECT_EQ(questions, 1) << "an X server is of no interest beside data control";
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
