#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::TestWithParam;
using testing::UnorderedElementsAre;
using testing::Values;

const std::filesystem::path sources = ORLIMO_SOURCES;

CommandResult run(const std::filesystem::path& program, std::vector<std::string> arguments)
{
    return CommandResult::of(sources / program, {.arguments = std::move(arguments)});
}

/// What ./measure prints of these lines of figures.
CommandResult
table(const std::string& figures, const std::string& options, const std::filesystem::path& json)
{
    const std::string command = "printf '%s' '" + figures + "' | '" +
                                (sources / "bench/table").string() + "' --json '" + json.string() +
                                "' " + options;
    return CommandResult::of("/bin/sh", {.arguments = {"-c", command}});
}

std::string figure(const std::string& name, const std::string& met)
{
    return R"({"name": ")" + name +
           R"(", "what": "a thing", "against": "another", "unit": "ms", "measured": 3.5, )"
           R"("reference": 2, "ratio": 1.75, "goal": 1.5, "direction": "at most", "met": )" +
           met + R"(, "command": "it", "note": ""})" + "\n";
}

/// A program that measures, in a run that shows no more than that it works.
class Figures : public TestWithParam<const char*>
{};

TEST_P(Figures, AreObjectsOfOneFormOneALine)
{
    const auto result =
        run(std::string("bench/") + GetParam() + "-figures",
            {"--programs", ORLIMO_BUILD_FOLDER, "--quick"});
    ASSERT_EQ(result.status, 0) << result.text();
    const auto lines = linesOf(result.output);
    EXPECT_THAT(lines, Not(IsEmpty()));
    for (const std::string& line : lines) {
        const QJsonObject one = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        std::vector<std::string> keys;
        for (const QString& key : one.keys()) {
            keys.push_back(key.toStdString());
        }
        EXPECT_THAT(
            keys,
            UnorderedElementsAre(
                "name",
                "what",
                "against",
                "unit",
                "measured",
                "reference",
                "ratio",
                "goal",
                "direction",
                "met",
                "command",
                "note"))
            << line;
        EXPECT_TRUE(one[QLatin1String("measured")].isDouble()) << line;
        EXPECT_EQ(one[QLatin1String("goal")].isNull(), one[QLatin1String("met")].isNull()) << line;
    }
}

INSTANTIATE_TEST_SUITE_P(
    OfTheWholeProgram,
    Figures,
    Values("latency", "start", "memory", "idle", "window"),
    [](const auto& tested) { return std::string(tested.param); });

TEST(Measure, TheTableSaysWhichGoalsAreMissed)
{
    const TemporaryFolder folder;
    const auto json = folder.path() / "figures.json";
    const auto result = table(figure("slow", "false") + figure("quick", "true"), "", json);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(
        result.output, HasSubstr("slow        3.5          2  ms     1.75  <= 1.5  MISSED"));
    EXPECT_THAT(result.output, HasSubstr("quick       3.5          2  ms     1.75  <= 1.5  met"));
    const auto list = QJsonDocument::fromJson(QByteArray::fromStdString(contentOf(json))).array();
    EXPECT_EQ(list.size(), 2);
}

TEST(Measure, OnlyStrictlyIsAMissedGoalAFailure)
{
    const TemporaryFolder folder;
    const auto json = folder.path() / "figures.json";
    EXPECT_EQ(table(figure("slow", "false"), "--strict", json).status, 3);
    EXPECT_EQ(table(figure("quick", "true"), "--strict", json).status, 0);
    EXPECT_EQ(table("", "", json).status, 1) << "nothing was measured";
}

TEST(Measure, HelpAndMistakesBuildNothing)
{
    const auto help = run("measure", {"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("Usage: ./measure"));
    EXPECT_EQ(run("measure", {"speed"}).status, 2);
    EXPECT_EQ(run("measure", {"latency start"}).status, 2);
    EXPECT_EQ(run("measure", {"--json"}).status, 2);
}

} // namespace
} // namespace orlimo
