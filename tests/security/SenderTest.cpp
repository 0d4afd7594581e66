#include "tests/program/ProgramSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace orlimo {
namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;

/// What somebody can do who can do no more than send a message.
class Sender : public testing::Test
{
protected:
    void SetUp() override
    {
        session.start();
        session.awaitOpenThrottle();
    }

    ProgramSession session;
};

TEST_F(Sender, EndsTheProgramByNamingTheArchivesClassInABody)
{
    session.deliver("body Learn what an NSString is: 482913");
    EXPECT_EQ(session.program().awaitEnd().signal, SIGABRT);
    EXPECT_THAT(session.program().errors(), HasSubstr("the string in a message body is cut short"));
}

TEST_F(Sender, DoesNoHarmWithTheSameTextInTheTextColumn)
{
    const std::string text = "Learn what an NSString is: 482913";
    session.deliver("text " + text);
    EXPECT_THAT(
        session.readReaction(), ElementsAreArray(ProgramSession::reactionTo(text, "482913")));
}

} // namespace
} // namespace orlimo
