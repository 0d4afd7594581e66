#include "platform/desktop/ToolkitArguments.h"

#include "platform/clipboard/linux/ClipboardRoute.h"
#include "tests/support/process/EnvironmentChange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The arguments that the toolkit gets where the program got `given`.
std::vector<std::string> toolkitsOf(const std::vector<const char*>& given)
{
    ToolkitArguments arguments(static_cast<int>(given.size()), given.data());
    EXPECT_EQ(arguments.values()[arguments.count()], nullptr);
    return {arguments.values(), arguments.values() + arguments.count()};
}

/// A session in which nothing is to be reached, changed by each test.
class ToolkitArgumentsTest : public testing::Test
{
protected:
    ~ToolkitArgumentsTest() override { takeClipboardRoute(ClipboardRoute::toolkit); }

    EnvironmentChange noPlatform{"QT_QPA_PLATFORM", std::nullopt};
    EnvironmentChange noDisplay{"DISPLAY", std::nullopt};
    EnvironmentChange noCompositor{"WAYLAND_DISPLAY", std::nullopt};
    EnvironmentChange noSessionType{"XDG_SESSION_TYPE", std::nullopt};
};

TEST_F(ToolkitArgumentsTest, AreTheProgramsOwn)
{
    EXPECT_THAT(
        toolkitsOf({"orlimo", "-style", "fusion", "--launched-at-login"}),
        ElementsAre("orlimo", "-style", "fusion", "--launched-at-login"));
    EXPECT_EQ(takenClipboardRoute(), ClipboardRoute::toolkit);
}

TEST_F(ToolkitArgumentsTest, ArePassedOnInASessionWithoutAnyRoute)
{
    const EnvironmentChange compositor("WAYLAND_DISPLAY", "no-such-compositor");
    testing::internal::CaptureStderr();
    EXPECT_THAT(toolkitsOf({"orlimo"}), ElementsAre("orlimo"));
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "orlimo: this session lets no program without a focused window set the clipboard; "
        "the Copy button still does\n");
    EXPECT_EQ(takenClipboardRoute(), ClipboardRoute::focusedOnly);
}

TEST_F(ToolkitArgumentsTest, HeedTheSessionsType)
{
    const EnvironmentChange type("XDG_SESSION_TYPE", "wayland");
    testing::internal::CaptureStderr();
    (void)toolkitsOf({"orlimo"});
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Copy button"));
}

TEST_F(ToolkitArgumentsTest, KeepToThePlatformInTheEnvironment)
{
    const EnvironmentChange compositor("WAYLAND_DISPLAY", "no-such-compositor");
    const EnvironmentChange platform("QT_QPA_PLATFORM", "offscreen");
    testing::internal::CaptureStderr();
    EXPECT_THAT(toolkitsOf({"orlimo"}), ElementsAre("orlimo"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(takenClipboardRoute(), ClipboardRoute::toolkit);
}

TEST_F(ToolkitArgumentsTest, KeepToTheLastPlatformOnTheCommandLine)
{
    const EnvironmentChange compositor("WAYLAND_DISPLAY", "no-such-compositor");
    const EnvironmentChange platform("QT_QPA_PLATFORM", "wayland");
    testing::internal::CaptureStderr();
    EXPECT_THAT(
        toolkitsOf({"orlimo", "-platform", "wayland", "--platform", "offscreen"}),
        ElementsAre("orlimo", "-platform", "wayland", "--platform", "offscreen"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ToolkitArgumentsTest, MayEndWithAnOptionWithoutItsValue)
{
    EXPECT_THAT(toolkitsOf({"orlimo", "-platform"}), ElementsAre("orlimo", "-platform"));
}

} // namespace
} // namespace orlimo
