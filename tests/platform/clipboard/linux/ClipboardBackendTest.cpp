#include "platform/clipboard/linux/ClipboardBackend.h"

#include "platform/clipboard/linux/DataControlPasteboard.h"
#include "platform/clipboard/linux/GeneralPasteboard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

namespace {

/// A session, its best backend, and for how long the compositor is asked about it.
struct Session
{
    const char* name;
    std::optional<std::string> chosenPlatform;
    bool isWaylandSession;
    DataControlAvailability dataControl;
    bool hasXServer;
    ClipboardBackend best;
    std::optional<std::chrono::seconds> compositorTimeout{};
};

constexpr auto none = std::nullopt;

using enum DataControlAvailability;
using enum ClipboardBackend;

constexpr std::chrono::seconds brief{2};
constexpr std::chrono::seconds patient{30};

TEST(ClipboardBackend, FitsTheSession)
{
    for (const Session& session : std::vector<Session>{
             {"X11", none, false, notOffered, true, qt},
             {"Wayland with both", none, true, offered, true, dataControl, patient},
             {"Wayland alone", none, true, offered, false, dataControl, patient},
             {"Wayland with X server only", none, true, notOffered, true, xServer, patient},
             {"Wayland with neither", none, true, notOffered, false, focusedOnly, patient},
             {"silent with X server", none, true, unknown, true, dataControlOrXServer, patient},
             {"silent alone", none, true, unknown, false, dataControl, patient},
             {"chosen silent Wayland", "wayland", true, unknown, true, dataControl, brief},
             {"chosen X on silent Wayland", "xcb", true, unknown, true, dataControl, brief},
             {"chosen Wayland", "wayland", true, offered, true, dataControl, brief},
             {"chosen Wayland EGL", "wayland-egl", true, offered, true, dataControl, brief},
             {"chosen, X server only", "wayland", true, notOffered, true, focusedOnly, brief},
             {"chosen first", "wayland;xcb", true, notOffered, true, focusedOnly, brief},
             {"chosen both on X11", "wayland;xcb", false, notOffered, true, qt},
             {"chosen X, no server", "xcb;wayland", true, offered, false, dataControl, brief},
             {"chosen X, neither", "xcb;wayland", true, notOffered, false, focusedOnly, brief},
             {"chosen X on X11", "xcb", false, notOffered, true, qt},
             {"chosen X on Wayland", "xcb", true, offered, true, dataControl, brief},
             {"with options", "xcb:option;wayland", true, offered, true, dataControl, brief},
             {"chosen X, no data control", "xcb", true, notOffered, true, qt, brief},
             {"chosen other", "offscreen", true, offered, true, qt},
             {"chosen other with neither", "vnc", true, notOffered, false, qt}})
    {
        SCOPED_TRACE(session.name);
        std::optional<std::chrono::milliseconds> waited;
        bool isServerQueried = false;
        const auto best = bestClipboardBackend(
            {.chosenPlatform = session.chosenPlatform,
             .isWaylandSession = session.isWaylandSession,
             .dataControl =
                 [&](auto limit) {
                     waited = limit;
                     return session.dataControl;
                 },
             .hasXServer =
                 [&] {
                     isServerQueried = true;
                     return session.hasXServer;
                 }});
        EXPECT_EQ(best, session.best);
        EXPECT_EQ(waited, session.compositorTimeout);
        const bool isChoiceOfSeveral =
            session.chosenPlatform.value_or("").find(';') != std::string::npos;
        if (session.dataControl == offered && !isChoiceOfSeveral) {
            EXPECT_FALSE(isServerQueried) << "an X server does not matter beside data control";
        }
    }
}

TEST(GeneralPasteboard, UsesDataControlWhereItMayBeOffered)
{
    for (const ClipboardBackend backend :
         {qt, dataControl, dataControlOrXServer, xServer, focusedOnly}) {
        const auto pasteboard = makeGeneralPasteboard(backend);
        EXPECT_EQ(
            dynamic_cast<DataControlPasteboard*>(pasteboard.get()) != nullptr,
            backend == dataControl || backend == dataControlOrXServer);
    }
}

} // namespace
} // namespace orlimo
