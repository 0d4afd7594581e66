#include "tests/packaging/CommandResult.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Matcher;
using testing::Not;
using testing::ResultOf;
using testing::StartsWith;

/// What measures how the store is read, in a scratch folder of the test's own.
class CaptureFiguresTest : public testing::Test
{
protected:
    [[nodiscard]] CommandResult
    run(std::vector<std::string> arguments, const std::string& program = ORLIMO_BENCHMARKS) const
    {
        arguments.insert(arguments.end(), {"--program", program});
        return CommandResult::of(
            ORLIMO_CAPTURE_FIGURES,
            {.arguments = std::move(arguments), .environment = {{"TMPDIR", scratch.path()}}});
    }

    TemporaryFolder scratch;
};

std::vector<QJsonObject> figuresIn(const std::string& output)
{
    std::vector<QJsonObject> figures;
    for (const std::string& line : linesOf(output)) {
        const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(line));
        EXPECT_TRUE(document.isObject()) << line;
        figures.push_back(document.object());
    }
    return figures;
}

std::string textOf(const QJsonObject& figure, const char* key)
{
    return figure[QLatin1String(key)].toString().toStdString();
}

/// In alphabetical order.
std::vector<std::string> keysOf(const QJsonObject& figure)
{
    std::vector<std::string> keys;
    for (const QString& key : figure.keys()) {
        keys.push_back(key.toStdString());
    }
    return keys;
}

Matcher<QJsonObject> has(const char* key, const Matcher<std::string>& text)
{
    return ResultOf(
        key, [key](const QJsonObject& figure) { return textOf(figure, key); }, text);
}

/// Its ratio is that of its numbers, and whether the goal is met is said of that ratio.
void expectConsistent(const QJsonObject& figure)
{
    SCOPED_TRACE(textOf(figure, "name"));
    const double measured = figure[QLatin1String("measured")].toDouble();
    const double reference = figure[QLatin1String("reference")].toDouble();
    const double ratio = figure[QLatin1String("ratio")].toDouble();
    EXPECT_GT(measured, 0);
    EXPECT_GT(reference, 0);

    const bool atMost = textOf(figure, "direction") == "at most";
    EXPECT_TRUE(atMost || textOf(figure, "direction") == "at least");
    // Each number is rounded to four digits.
    const double expected = atMost ? measured / reference : reference / measured;
    EXPECT_NEAR(ratio, expected, expected * 0.002);

    const QJsonValue goal = figure[QLatin1String("goal")];
    const QJsonValue met = figure[QLatin1String("met")];
    if (goal.isNull()) {
        EXPECT_TRUE(met.isNull());
    } else {
        const double limit = goal.toDouble();
        EXPECT_GT(limit, 0);
        ASSERT_TRUE(met.isBool());
        // Next to the limit the rounding decides what is seen here.
        if (std::abs(ratio - limit) > limit * 0.002) {
            EXPECT_EQ(met.toBool(), atMost ? ratio < limit : ratio > limit);
        }
    }
}

TEST_F(CaptureFiguresTest, EachLineIsAFigure)
{
    const auto result = run({"--quick"});
    ASSERT_EQ(result.status, 0) << result.text();
    EXPECT_EQ(result.errors, "");
    const auto figures = figuresIn(result.output);
    for (const char* group : {"stores", "bodies", "codes"}) {
        EXPECT_THAT(
            figures, Contains(has("command", std::string("bench/capture-figures ") + group)));
    }
    for (const QJsonObject& figure : figures) {
        EXPECT_THAT(
            keysOf(figure),
            ElementsAre(
                "against",
                "command",
                "direction",
                "goal",
                "measured",
                "met",
                "name",
                "note",
                "ratio",
                "reference",
                "unit",
                "what"));
        expectConsistent(figure);
    }
    EXPECT_THAT(
        figures,
        Each(AllOf(
            has("name", Not(IsEmpty())),
            has("what", Not(IsEmpty())),
            has("against", Not(IsEmpty())),
            has("unit", Not(IsEmpty())))));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path())) << "something was left behind";
}

TEST_F(CaptureFiguresTest, OneGroupIsMeasuredAlone)
{
    const auto result = run({"--quick", "bodies"});
    ASSERT_EQ(result.status, 0) << result.text();
    const auto figures = figuresIn(result.output);
    EXPECT_THAT(figures, Not(IsEmpty()));
    EXPECT_THAT(figures, Each(has("name", StartsWith("decode-"))));
}

TEST_F(CaptureFiguresTest, AMistakeIsSaid)
{
    EXPECT_EQ(run({"shops"}).status, 2);
    const auto result = run({"--quick"}, "/nowhere/orlimo_benchmarks");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("is not built"));
}

TEST_F(CaptureFiguresTest, BenchmarksThatFailLeaveNoFigure)
{
    const auto result = run({"--quick"}, "/bin/false");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("the benchmarks failed"));
}

} // namespace
} // namespace orlimo
