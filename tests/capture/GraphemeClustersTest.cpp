#include "capture/GraphemeClusters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

namespace orlimo {

namespace {

struct GraphemeClusterCase
{
    std::string name;
    std::u16string text;
    /// In UTF-16 units.
    std::vector<std::int32_t> boundaries;
    friend void PrintTo(const GraphemeClusterCase& given, std::ostream* stream)
    {
        *stream << given.name;
    }
};

class GraphemeClustersOfText : public testing::TestWithParam<GraphemeClusterCase>
{};

TEST_P(GraphemeClustersOfText, HaveBoundariesAndCountInAnyOrder)
{
    const auto& [name, units, boundaries] = GetParam();
    const icu::UnicodeString text(units.data(), static_cast<std::int32_t>(units.size()));
    GraphemeClusters clusters(text);
    EXPECT_EQ(clusters.count(), boundaries.size() - 1);
    for (std::int32_t offset = text.length(); offset >= 0; --offset) {
        const bool isBoundary = std::ranges::find(boundaries, offset) != boundaries.end();
        EXPECT_EQ(clusters.isBoundary(offset), isBoundary) << offset;
    }
    EXPECT_EQ(clusters.count(), boundaries.size() - 1) << "a second time";
}

INSTANTIATE_TEST_SUITE_P(
    Texts,
    GraphemeClustersOfText,
    testing::Values(
        GraphemeClusterCase{"Empty", u"", {0}},
        GraphemeClusterCase{"CombiningMark", u"ae\u0301b", {0, 1, 3, 4}},
        GraphemeClusterCase{"Keycap", u"12\uFE0F\u20E3", {0, 1, 4}},
        GraphemeClusterCase{"LineBreakOfTwo", u"a\r\nb", {0, 1, 3, 4}},
        GraphemeClusterCase{"LineFeedBeforeReturn", u"\n\r", {0, 1, 2}},
        GraphemeClusterCase{"NumberSignBeforeDigit", u"\u060012", {0, 2, 3}},
        GraphemeClusterCase{"SurrogatePairs", u"\U0001D7CE\U0001D7CF", {0, 2, 4}},
        GraphemeClusterCase{"Flags", u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", {0, 4, 8}},
        GraphemeClusterCase{"Family", u"\U0001F468\u200D\U0001F469\u200D\U0001F467!", {0, 8, 9}},
        GraphemeClusterCase{"HangulSyllable", u"\u1112\u1161\u11ABx", {0, 3, 4}},
        GraphemeClusterCase{"MarkAtStart", u"\u0301a", {0, 1, 2}},
        GraphemeClusterCase{"Nul", {u"a\0b", 3}, {0, 1, 2, 3}}),
    [](const auto& given) { return given.param.name; });

} // namespace

} // namespace orlimo
