#include "platform/files/WalIndex.h"
#include "tests/sample/StoreContent.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orlimo::sample {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// The command line, from outside.
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

    [[nodiscard]] StoreContent content() const { return StoreContent(store); }
    [[nodiscard]] long long messages() const
    {
        return content().number("SELECT count(*) FROM message");
    }

    TemporaryFolder folder;
    std::string store = (folder.path() / "chat.db").string();
};

TEST_F(SampleProgram, CreatesStoreAppendsAndDelivers)
{
    const auto created = run({"create", store, "--messages", "123"});
    EXPECT_EQ(created.status, 0);
    EXPECT_EQ(created.errors, "");
    EXPECT_EQ(std::filesystem::file_size(logOf(store)), 0U);
    EXPECT_EQ(messages(), 123);

    EXPECT_EQ(run({"append", store, "--text", "Hello \\n you"}).output, "124\n");
    const auto size = std::filesystem::file_size(logOf(store));
    EXPECT_EQ(run({"append", store, "--body", "Hello"}).output, "125\n");
    EXPECT_GT(std::filesystem::file_size(logOf(store)), size);
    EXPECT_EQ(
        run({"append", store, "--immutable-body", "Hello", "--synchronous", "off"}).output,
        "126\n");
    EXPECT_THAT(
        content().column("SELECT coalesce(text, 'body') FROM message WHERE ROWID > 123"),
        ElementsAre("Hello \\n you", "body", "body"));

    const auto expected = (folder.path() / "expected").string();
    const auto delivery =
        run({"deliver", store, "--interval", "0.01", "--count", "4", "--expected", expected});
    EXPECT_EQ(delivery.status, 0);
    EXPECT_EQ(std::ranges::count(delivery.output, '\n'), 5);
    EXPECT_EQ(std::ranges::count(contentOf(expected), '\n'), 3);
    EXPECT_EQ(messages(), 130);
}

TEST_F(SampleProgram, HelpIsUsageAndStatus0)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--help"}, {"-h"}, {"create", "--help"}})
    {
        const auto help = run(arguments);
        EXPECT_EQ(help.status, 0);
        EXPECT_THAT(help.output, StartsWith("Usage: orlimo-sample-store COMMAND STORE"));
    }
}

TEST_F(SampleProgram, WrongUseIsStatus2AndFailureStatus1WithReason)
{
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong{
        {{}, "a command and a store are needed"},
        {{"create", store, "more"}, "a command and a store are needed"},
        {{"dance", store}, "unknown command \"dance\""},
        {{"create", store, "--messages"}, "--messages needs a value"},
        {{"create", store, "--messages", "-1"}, "--messages needs a number, not \"-1\""},
        {{"create", store, "--messages", "1x"}, "--messages needs a number, not \"1x\""},
        {{"create", store, "--colour", "red"}, "unknown option --colour"},
        {{"create", store, "--synchronous", "half"}, "--synchronous is off, normal or full"},
        {{"append", store}, "append needs --text, --body or --immutable-body"},
        {{"append", store, "--text", "a", "--body", "b"}, "unknown option --body"},
        {{"deliver", store, "--interval", "nan"}, "--interval needs a number, not \"nan\""},
        {{"deliver", store, "--count", "1.5"}, "--count needs a number, not \"1.5\""},
    };
    for (const auto& [arguments, reason] : wrong) {
        const auto result = run(arguments);
        EXPECT_EQ(result.status, 2) << reason;
        EXPECT_EQ(result.errors, "orlimo-sample-store: " + reason + "; see --help\n");
        EXPECT_EQ(result.output, "");
    }
    EXPECT_FALSE(std::filesystem::exists(store));
    const auto failure = run({"create", (folder.path() / "none/chat.db").string()});
    EXPECT_EQ(failure.status, 1);
    EXPECT_EQ(failure.errors, "orlimo-sample-store: unable to open database file\n");
}

/// The program in another process, controlled by commands.
class SampleService : public SampleProgram
{
protected:
    void SetUp() override { ASSERT_EQ(process.readLine(), "ready"); }

    [[nodiscard]] std::string ask(const std::string& command) { return process.ask(command); }
    [[nodiscard]] bool isLocked() { return index.writeLock() == WalIndex::Lock::held; }

    ChildProcess process{
        ORLIMO_SAMPLE_STORE,
        {.arguments = {"serve", store, "--messages", "30", "--synchronous", "NORMAL"}}};
    WalIndex index{logOf(store)};
};

TEST_F(SampleService, StoresEachKindOfMessageAndUnescapesIt)
{
    const std::vector<std::pair<std::string, std::string>> commands{
        {"text  two  blanks ", "2074776F2020626C616E6B7320"},
        {"text", ""},
        {R"(text a\nb\tc\\d\x00e\xffF\x0a1)", "610A6209635C640065FF460A31"},
        {R"(body \xC3\xA4)", "019584012B02C3A4"},
        {"immutable Hello", "019484012B0548656C6C6F"},
    };
    int row = 30;
    for (const auto& [command, bytes] : commands) {
        EXPECT_EQ(ask(command), "committed " + std::to_string(++row));
        EXPECT_EQ(messages(), row) << "a response means that it can be read";
        const auto stored = content().column(
            "SELECT coalesce(hex(text), '') || hex(coalesce(attributedBody, '')) FROM message "
            "WHERE ROWID = " +
            std::to_string(row));
        if (command.starts_with("text")) {
            EXPECT_THAT(stored, ElementsAre(bytes));
        } else {
            EXPECT_THAT(stored, ElementsAre(HasSubstr(bytes)));
        }
    }
}

TEST_F(SampleService, TransactionHoldsWritersLockAndSpillsUnseen)
{
    for (const std::string end : {"commit", "rollback"}) {
        const auto before = messages();
        EXPECT_EQ(ask("begin"), "ok");
        EXPECT_FALSE(isLocked());
        EXPECT_EQ(ask("text one"), "added " + std::to_string(before + 1));
        EXPECT_TRUE(isLocked());
        const auto size = std::filesystem::file_size(logOf(store));
        EXPECT_EQ(ask("spill"), "ok");
        EXPECT_GT(std::filesystem::file_size(logOf(store)), size);
        EXPECT_TRUE(isLocked());
        EXPECT_EQ(messages(), before);
        EXPECT_EQ(ask(end), end == "commit" ? "committed" : "rolled back");
        EXPECT_FALSE(isLocked());
        EXPECT_EQ(messages(), before + (end == "commit" ? 1 : 0));
    }
}

TEST_F(SampleService, TruncatesLogAndRunsStatements)
{
    EXPECT_EQ(ask("sql DELETE FROM message; SELECT 1"), "ok");
    EXPECT_EQ(ask("truncate"), "ok");
    EXPECT_EQ(std::filesystem::file_size(logOf(store)), 0U);
    EXPECT_EQ(messages(), 0);
    process.closeInput();
    EXPECT_EQ(process.awaitEnd().status, 0);
}

TEST_F(SampleService, FailedCommandIsReportedAndServiceContinues)
{
    for (const std::string text : {R"(\q)", R"(\)", R"(\x1)", R"(\xZZ)"}) {
        EXPECT_EQ(ask("text " + text), "error: unknown escape in the text") << text;
    }
    EXPECT_EQ(ask("sql SELEKT"), "error: near \"SELEKT\": syntax error");
    EXPECT_EQ(ask("dance now"), "error: unknown command \"dance\"");
    EXPECT_THAT(ask("body " + std::string(65536, 'x')), StartsWith("error: a body's text"));
    EXPECT_EQ(ask("text Hello"), "committed 31");
    process.writeLine("quit");
    EXPECT_EQ(process.awaitEnd().status, 0);
}

} // namespace
} // namespace orlimo::sample
