#include "tests/desktop/WaylandTest.h"

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using ProgramOnMutter = WaylandTest;

TEST_F(ProgramOnMutter, IsOnWaylandWhereTheUserWantsIt)
{
    prepare({"--launched-at-login"}, "wayland");
    session().start();
    EXPECT_EQ(platformOf(program().processId()), "wayland");
    EXPECT_TRUE(awaitWithPolling([this] { return !program().errors().empty(); }));
    EXPECT_THAT(linesOf(program().errors()), ElementsAre(HasSubstr("clipboard")));
}

TEST_F(ProgramOnMutter, ShowsItsWindowWhenTheUserStartsIt)
{
    prepare({});
    session().start();
    EXPECT_TRUE(awaitWithPolling([this] {
        return desktop().accessibility().find("push button", "Copy").has_value();
    })) << program().errors();
}

} // namespace
} // namespace orlimo
