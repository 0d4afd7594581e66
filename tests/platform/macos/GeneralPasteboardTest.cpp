#include "platform/Pasteboard.h"
#include "tests/platform/PasteboardContents.h"
#include "tests/platform/macos/PasteboardServer.h"

#include <gtest/gtest.h>

#include <optional>

namespace orlimo {
namespace {

std::optional<PasteboardServer>& pasteboardServer()
{
    static std::optional<PasteboardServer> server;
    return server;
}

/// The server, there for every test of this program.
class ServerEnvironment : public testing::Environment
{
public:
    void SetUp() override
    {
        pasteboardServer().emplace();
        // Without it GNUstep would start one of its own, for the whole of the user's session.
        ASSERT_FALSE(testing::Test::HasFailure());
    }
    void TearDown() override { pasteboardServer().reset(); }
};

// GoogleTest owns it.
[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new ServerEnvironment);

TEST(GeneralPasteboard, IsWhatOtherProgramsPasteFrom)
{
    generalPasteboard().declareTypes({PasteboardType::string});
    generalPasteboard().setString("123456", PasteboardType::string);
    EXPECT_EQ(pasteboardServer()->paste(), "123456");
    generalPasteboard().declareTypes({PasteboardType::string});
    generalPasteboard().setString("\u0661\u0662 e\u0301", PasteboardType::string);
    EXPECT_EQ(pasteboardServer()->paste(), "\u0661\u0662 e\u0301");
}

TEST(GeneralPasteboard, IsEmptyAfterTheDeclaration)
{
    contents::fill();
    generalPasteboard().declareTypes({PasteboardType::string});
    EXPECT_EQ(contents::text(), "");
    EXPECT_EQ(contents::types(), contents::typesOfText());
}

} // namespace
} // namespace orlimo
