#include "platform/services/Session.h"

#include "tests/support/process/EnvironmentChange.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace orlimo {
namespace {

/// A start of the program and whether it warns that the clipboard needs the focus.
struct Start
{
    std::optional<std::string> compositor;
    std::optional<std::string> sessionType;
    std::optional<std::string> platform;
    std::vector<const char*> arguments;
    bool warns;
    std::optional<std::string> xServer{};
};

TEST(Session, KeepsTheArgumentsAndWarnsIfNoClipboardBackendWorks)
{
    constexpr const char* missing = "no-such-compositor";
    for (const Start& start : std::vector<Start>{
             {{}, {}, {}, {"orlimo", "-style", "fusion", "--launched-at-login"}, false},
             {{}, {}, {}, {"orlimo", "-platform"}, false},
             {missing, {}, {}, {"orlimo"}, true},
             {missing, {}, {}, {"orlimo"}, true, "unix:/no-such-x-server"},
             {"", "x11", {}, {"orlimo"}, false},
             {{}, "wayland", {}, {"orlimo"}, true},
             {missing, {}, "offscreen", {"orlimo"}, false},
             // The last platform on the command line counts.
             {missing,
              {},
              "wayland",
              {"orlimo", "-platform", "wayland", "--platform", "offscreen"},
              false}})
    {
        const EnvironmentChange display("DISPLAY", start.xServer);
        const EnvironmentChange compositor("WAYLAND_DISPLAY", start.compositor);
        const EnvironmentChange type("XDG_SESSION_TYPE", start.sessionType);
        const EnvironmentChange platform("QT_QPA_PLATFORM", start.platform);
        testing::internal::CaptureStderr();
        Session session =
            detectSession(static_cast<int>(start.arguments.size()), start.arguments.data());
        const std::vector<std::string> expected(start.arguments.begin(), start.arguments.end());
        char** const values = session.arguments.values();
        EXPECT_EQ(std::vector<std::string>(values, values + session.arguments.count()), expected);
        EXPECT_EQ(values[session.arguments.count()], nullptr);
        EXPECT_EQ(
            testing::internal::GetCapturedStderr(),
            start.warns ? "orlimo: this session lets no program without a focused window set the "
                          "clipboard; the Copy button still does\n"
                        : "");
    }
}

} // namespace
} // namespace orlimo
