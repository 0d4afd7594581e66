#include "tests/app/MutterSession.h"
#include "tests/app/ProgramSession.h"
#include "tests/support/ParentBond.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The program on a Wayland desktop that gives the clipboard only to the program with the focus.
class ProgramOnMutter : public testing::Test
{
protected:
    /// Waits until `expected` is what the compositor reads.
    [[nodiscard]] testing::AssertionResult awaitPaste(const std::string& expected)
    {
        if (awaitSparingly([&] { return desktop.clipboard().paste() == expected; })) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure()
               << "the clipboard holds \"" << desktop.clipboard().paste().value_or("nothing")
               << "\"; the program printed\n"
               << session.program().output() << session.program().errors();
    }

    MutterSession desktop;
    ProgramSession session{{.environment = desktop.environment(), .beforeStart = endWithParent}};
};

TEST_F(ProgramOnMutter, PutsTheCodeOnTheClipboardWithoutTheFocus)
{
    session.start();
    desktop.copy("something that the user copied");
    for (const char* code : {"482913", "59302", "7764"}) {
        session.awaitOpenThrottle();
        session.deliver("text Your code is " + std::string(code) + ".");
        EXPECT_EQ(
            session.readReaction().back(), std::string(ProgramSession::reactionPrefix) + code);
        EXPECT_TRUE(awaitPaste(code));
    }
}

} // namespace
} // namespace orlimo
