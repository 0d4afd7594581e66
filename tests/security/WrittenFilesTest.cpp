#include "tests/desktop/sessions/DesktopProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include <sys/stat.h>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Who may do what with each file and folder in `home`, but for the caches of Qt's
/// libraries.
std::map<std::string, mode_t> modesIn(const std::filesystem::path& home)
{
    std::map<std::string, mode_t> modes;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
        const std::string name = std::filesystem::relative(entry.path(), home).string();
        struct stat status
        {};
        EXPECT_EQ(::lstat(entry.path().c_str(), &status), 0) << name;
        if (!name.starts_with(".cache")) {
            modes[name] = status.st_mode & ~static_cast<mode_t>(S_IFMT);
        }
    }
    return modes;
}

/// The program in use for a while, started by somebody who takes the rights `mask` away from what
/// programs make.
class WrittenFiles : public testing::TestWithParam<mode_t>
{
protected:
    void SetUp() override
    {
        found = modesIn(home());
        program.start();
        ASSERT_TRUE(awaitWithPolling(
            [this] { return std::filesystem::exists(program.session().autostartEntry()); }));
        ProgramSession::waitForThrottle();
        program.session().deliver("text Your code is 482913.");
        ASSERT_TRUE(program.awaitPaste("482913"));
        program.open();
        program.click("check box", "Include 4 digit code");
        ASSERT_TRUE(program.awaitPreferences(
            {{"capturingEnabled", "true"},
             {"fourDigitInclude", "false"},
             {"loginItemEnabled", "true"}}));
        program.close();
    }

    [[nodiscard]] std::filesystem::path home() { return program.session().home(); }

    DesktopProgram program{{.beforeStart = [mask = GetParam()] { ::umask(mask); }}};
    std::map<std::string, mode_t> found;
};

TEST_P(WrittenFiles, AreTheseAndTheUsersAloneAndHoldNothingOfAMessage)
{
    auto expected = found;
    expected[".config/Orlimo"] = 0700;
    expected[".config/Orlimo/Orlimo.conf"] = 0600;
    expected[".config/autostart"] = 0700;
    expected[".config/autostart/app.orlimo.Orlimo.desktop"] = 0666 & ~GetParam();
    EXPECT_EQ(modesIn(home()), expected);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home())) {
        const std::string name = std::filesystem::relative(entry.path(), home()).string();
        if (entry.is_regular_file() && !name.starts_with("Library/Messages/")) {
            EXPECT_THAT(contentOf(entry.path()), Not(HasSubstr("482913"))) << name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Masks, WrittenFiles, testing::Values(022, 0), [](const auto& mask) {
    return mask.param == 0 ? "OfNothing" : "AsUsual";
});

} // namespace
} // namespace orlimo
