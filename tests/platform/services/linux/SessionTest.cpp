#include "platform/services/Session.h"

#include "tests/support/process/EnvironmentChange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The arguments for Qt if the program was started with `given`.
std::vector<std::string> qtArgumentsOf(const std::vector<const char*>& given)
{
    Session session = detectSession(static_cast<int>(given.size()), given.data());
    QtArguments& arguments = session.arguments;
    EXPECT_EQ(arguments.values()[arguments.count()], nullptr);
    return {arguments.values(), arguments.values() + arguments.count()};
}

/// A session without any display, changed by each test.
class SessionArguments : public testing::Test
{
protected:
    EnvironmentChange noPlatform{"QT_QPA_PLATFORM", std::nullopt};
    EnvironmentChange noDisplay{"DISPLAY", std::nullopt};
    EnvironmentChange noCompositor{"WAYLAND_DISPLAY", std::nullopt};
    EnvironmentChange noSessionType{"XDG_SESSION_TYPE", std::nullopt};
};

TEST_F(SessionArguments, StartWithTheProgramsOwn)
{
    EXPECT_THAT(
        qtArgumentsOf({"orlimo", "-style", "fusion", "--launched-at-login"}),
        ElementsAre("orlimo", "-style", "fusion", "--launched-at-login"));
}

TEST_F(SessionArguments, AreUnchangedWithoutAnyClipboardBackend)
{
    const EnvironmentChange compositor("WAYLAND_DISPLAY", "no-such-compositor");
    testing::internal::CaptureStderr();
    EXPECT_THAT(qtArgumentsOf({"orlimo"}), ElementsAre("orlimo"));
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "orlimo: this session lets no program without a focused window set the clipboard; "
        "the Copy button still does\n");
}

TEST_F(SessionArguments, DependOnTheSessionType)
{
    const EnvironmentChange type("XDG_SESSION_TYPE", "wayland");
    testing::internal::CaptureStderr();
    (void)qtArgumentsOf({"orlimo"});
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Copy button"));
}

TEST_F(SessionArguments, KeepThePlatformOfTheEnvironment)
{
    const EnvironmentChange compositor("WAYLAND_DISPLAY", "no-such-compositor");
    const EnvironmentChange platform("QT_QPA_PLATFORM", "offscreen");
    testing::internal::CaptureStderr();
    EXPECT_THAT(qtArgumentsOf({"orlimo"}), ElementsAre("orlimo"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(SessionArguments, KeepTheLastPlatformOnTheCommandLine)
{
    const EnvironmentChange compositor("WAYLAND_DISPLAY", "no-such-compositor");
    const EnvironmentChange platform("QT_QPA_PLATFORM", "wayland");
    testing::internal::CaptureStderr();
    EXPECT_THAT(
        qtArgumentsOf({"orlimo", "-platform", "wayland", "--platform", "offscreen"}),
        ElementsAre("orlimo", "-platform", "wayland", "--platform", "offscreen"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(SessionArguments, MayEndWithAnOptionWithoutItsValue)
{
    EXPECT_THAT(qtArgumentsOf({"orlimo", "-platform"}), ElementsAre("orlimo", "-platform"));
}

} // namespace
} // namespace orlimo
