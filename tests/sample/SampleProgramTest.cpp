#include "tests/sample/StoreContent.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo::sample {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The program's command line, from outside.
class SampleProgram : public testing::Test
{
protected:
    struct Run
    {
        std::optional<int> status;
        std::string output;
        std::string errors;
    };

    [[nodiscard]] static Run run(const std::vector<std::string>& arguments)
    {
        ChildProcess process(ORLIMO_SAMPLE_STORE, {.arguments = arguments});
        process.closeInput();
        const auto end = process.awaitEnd();
        return {end.status, process.output(), process.errors()};
    }

    TemporaryFolder folder;
    std::string store = (folder.path() / "chat.db").string();
};

TEST_F(SampleProgram, CreatesAStoreOfThatManyMessagesWithAnEmptyLog)
{
    const auto created = run({"create", store, "--messages", "1234"});
    EXPECT_EQ(created.status, 0);
    EXPECT_THAT(created.errors, IsEmpty());
    EXPECT_EQ(std::filesystem::file_size(logOf(store)), 0U);
    EXPECT_EQ(StoreContent(store).number("SELECT count(*) FROM message"), 1234);
}

TEST_F(SampleProgram, AppendsOneMessageAndPrintsItsRow)
{
    EXPECT_EQ(run({"append", store, "--text", "Hello \\n you"}).output, "1\n");
    EXPECT_EQ(run({"append", store, "--body", "Hello"}).output, "2\n");
    EXPECT_EQ(
        run({"append", store, "--immutable-body", "Hello", "--synchronous", "off"}).output, "3\n");

    EXPECT_THAT(
        StoreContent(store).column("SELECT text FROM message"),
        ElementsAre("Hello \\n you", "NULL", "NULL"));
    EXPECT_EQ(
        StoreContent(store).number("SELECT count(*) FROM message WHERE attributedBody IS NULL"), 1);
}

TEST_F(SampleProgram, AppendLeavesTheLogInPlaceAndLonger)
{
    EXPECT_EQ(run({"append", store, "--text", "one"}).status, 0);
    const auto size = std::filesystem::file_size(logOf(store));
    EXPECT_GT(size, 0U);
    EXPECT_EQ(run({"append", store, "--text", "two"}).status, 0);
    EXPECT_GT(std::filesystem::file_size(logOf(store)), size);
}

TEST_F(SampleProgram, AppendWaitsForAnotherWriter)
{
    ChildProcess writer(ORLIMO_SAMPLE_STORE, {.arguments = {"serve", store}});
    ASSERT_EQ(writer.readLine(), "ready");
    EXPECT_EQ(writer.ask("begin"), "ok");
    EXPECT_EQ(writer.ask("text one"), "added 1");
    ChildProcess second(ORLIMO_SAMPLE_STORE, {.arguments = {"append", store, "--text", "two"}});
    EXPECT_EQ(second.readLine(std::chrono::milliseconds(300)), std::nullopt);
    EXPECT_TRUE(second.isRunning());

    EXPECT_EQ(writer.ask("commit"), "committed");
    EXPECT_EQ(second.readLine(), "2");
    EXPECT_EQ(second.awaitEnd().status, 0);
}

TEST_F(SampleProgram, HelpNamesEveryCommand)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--help"}, {"-h"}, {"create", "--help"}})
    {
        const auto help = run(arguments);
        EXPECT_EQ(help.status, 0);
        for (const char* command : {"create STORE", "append STORE", "deliver STORE", "serve STORE"})
        {
            EXPECT_THAT(help.output, HasSubstr(command));
        }
    }
}

TEST_F(SampleProgram, WrongUseIsStatus2AndALineThatSaysWhatIsWrong)
{
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong{
        {{}, "a command and a store are needed"},
        {{"create"}, "a command and a store are needed"},
        {{"create", store, "more"}, "a command and a store are needed"},
        {{"dance", store}, "unknown command \"dance\""},
        {{"create", store, "--messages"}, "--messages needs a value"},
        {{"create", store, "--messages", "many"}, "--messages needs a number, not \"many\""},
        {{"create", store, "--messages", "-1"}, "--messages needs a number, not \"-1\""},
        {{"create", store, "--messages", "1x"}, "--messages needs a number, not \"1x\""},
        {{"create", store, "--colour", "red"}, "unknown option --colour"},
        {{"create", store, "--synchronous", "half"}, "--synchronous is off, normal or full"},
        {{"append", store}, "append needs --text, --body or --immutable-body"},
        {{"append", store, "--text", "a", "--body", "b"}, "unknown option --body"},
        {{"deliver", store, "--interval", "nan"}, "--interval needs a number, not \"nan\""},
        {{"deliver", store, "--interval", "inf"}, "--interval needs a number, not \"inf\""},
        {{"deliver", store, "--count", "1.5"}, "--count needs a number, not \"1.5\""},
    };
    for (const auto& [arguments, words] : wrong) {
        const auto result = run(arguments);
        EXPECT_EQ(result.status, 2) << words;
        EXPECT_EQ(result.errors, "orlimo-sample-store: " + words + "; see --help\n");
        EXPECT_THAT(result.output, IsEmpty());
    }
    EXPECT_FALSE(std::filesystem::exists(store));
}

TEST_F(SampleProgram, FailureIsStatus1AndSqlitesWords)
{
    const auto result = run({"create", (folder.path() / "none/chat.db").string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, StartsWith("orlimo-sample-store: "));
    EXPECT_THAT(result.errors, HasSubstr("unable to open database file"));
}

TEST_F(SampleProgram, SomebodyElsesStoreIsRefused)
{
    writeFile(store, "This is a letter and not a database. " + std::string(4096, '.'));
    const auto result = run({"append", store, "--text", "Hello"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "orlimo-sample-store: file is not a database\n");
}

} // namespace
} // namespace orlimo::sample
