#include "platform/ApplicationIdentity.h"
#include "tests/packaging/CommandResult.h"
#include "tests/packaging/InstalledTree.h"
#include "tests/support/BuiltPrograms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

namespace orlimo {
namespace {

using testing::HasSubstr;

/// The manual page as a reader sees it.
class ManualPage : public testing::Test
{
protected:
    InstalledTree tree;
    CommandResult shown = CommandResult::of(
        "/usr/bin/man",
        {
            .arguments = {"--warnings", "--local-file", tree.file("share/man/man1/orlimo.1")},
            .environment =
                {{"LC_ALL", "C.UTF-8"},
                 {"MANROFFSEQ", ""},
                 {"MANWIDTH", "200"},
                 {"MAN_KEEP_FORMATTING", std::nullopt}},
        });
};

TEST_F(ManualPage, IsShownWithoutAWarning)
{
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.errors, "");
    EXPECT_THAT(shown.output, HasSubstr("Orlimo " + std::string(identity::version)));
    EXPECT_THAT(shown.output, HasSubstr(std::string(identity::website)));
    EXPECT_THAT(
        shown.output,
        HasSubstr("autostart/" + std::string(identity::applicationIdentifier) + ".desktop"));
}

TEST_F(ManualPage, ExplainsEveryOption)
{
    const std::string help = CommandResult::of(ORLIMO_PROGRAM, {.arguments = {"--help"}}).output;
    const std::regex option("--[a-z-]+");
    int options = 0;
    for (auto found = std::sregex_iterator(help.begin(), help.end(), option);
         found != std::sregex_iterator();
         ++found)
    {
        ++options;
        EXPECT_THAT(shown.output, HasSubstr(found->str()));
    }
    EXPECT_GE(options, 3);
}

} // namespace
} // namespace orlimo
