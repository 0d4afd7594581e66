#include "tests/app/ProgramSession.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"

#include <QtGlobal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace orlimo {
namespace {

using testing::Contains;

std::string contentOf(const std::filesystem::path& file)
{
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

/// Has GNUstep look for the user's folders where this system has them.
class FolderEnvironment : public testing::Environment
{
public:
    void SetUp() override { qputenv("GNUSTEP_CONFIG_FILE", ORLIMO_GNUSTEP_FOLDERS); }
};

// GoogleTest owns it.
[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new FolderEnvironment);

class ProgramTest : public testing::Test
{
protected:
    const TemporaryFolder folder;
    const std::filesystem::path pasteboard = folder.path() / "pasteboard";
    ProgramSession session{
        {.environment = {{"ORLIMO_TEST_PASTEBOARD", std::optional(pasteboard.string())}}}};
};

TEST_F(ProgramTest, PutsEachCodeOnThePasteboard)
{
    session.start();
    for (const std::string code : {"482913", "70126"}) {
        session.awaitOpenThrottle();
        session.deliver("text Your code is " + code + ".");
        EXPECT_THAT(session.readReaction(), Contains(ProgramSession::reactionPrefix + code));
        // The line comes first.
        EXPECT_TRUE(await([&] { return contentOf(pasteboard) == code; })) << contentOf(pasteboard);
    }
}

} // namespace
} // namespace orlimo
