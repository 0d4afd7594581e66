#include "tests/resources/translations/CatalogueFile.h"
#include "tests/resources/translations/TextSlot.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGlyphRun>
#include <QTextLayout>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace orlimo {
namespace {

/// The widest of the fonts that desktops use for their windows, or the only one where the system
/// has one of its own, in the size and weight of `place`. What it lacks comes from the other fonts
/// of the system, as in a window.
QFont fontOf(const TextSlot& place)
{
    const QString family = QStringLiteral(ORLIMO_WIDEST_FONT);
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (!family.isEmpty()) {
        font.setFamily(family);
        EXPECT_EQ(QFontInfo(font).family(), family) << "it is not installed";
    }
    font.setPixelSize(place.fontPixelSize);
    font.setWeight(place.weight);
    return font;
}

bool hasAllGlyphs(const QTextLayout& layout)
{
    const auto runs = layout.glyphRuns();
    return !runs.isEmpty() && std::ranges::none_of(runs, [](const QGlyphRun& run) {
        return run.glyphIndexes().contains(0U);
    });
}

void expectToFit(const QString& text, const TextSlot& place)
{
    QTextLayout layout(text, fontOf(place));
    QTextOption option;
    option.setWrapMode(place.lines == 1 ? QTextOption::NoWrap : QTextOption::WordWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(place.width);
        EXPECT_LE(line.naturalTextWidth(), place.width) << text.toStdString();
    }
    layout.endLayout();
    EXPECT_LE(layout.lineCount(), place.lines) << text.toStdString();
    EXPECT_TRUE(hasAllGlyphs(layout)) << "no font of this system can show: " << text.toStdString();
}

TEST(TextFit, EnglishTextsFitTheirPlaces)
{
    for (const TextSlot& place : textSlots()) {
        if (place.width > 0) {
            expectToFit(QString::fromUtf8(place.source), place);
        }
    }
}

TEST(TextFit, WhatNoFontCanShowIsNoticed)
{
    // A private character that no font has.
    QTextLayout layout(QStringLiteral("Copy \U0010FFFD"), fontOf(textSlots().front()));
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    EXPECT_FALSE(hasAllGlyphs(layout));
}

class TextFitIn : public testing::TestWithParam<std::string>
{};

TEST_P(TextFitIn, TextsFitTheirPlaces)
{
    const CatalogueFile catalogue = CatalogueFile::read(catalogueFileOf(GetParam()));
    for (const TextSlot& place : textSlots()) {
        if (place.width == 0) {
            continue;
        }
        const auto entry = std::ranges::find_if(catalogue.entries, [&place](const auto& candidate) {
            return candidate.context == QLatin1String(place.context) &&
                   candidate.source == QLatin1String(place.source);
        });
        ASSERT_NE(entry, catalogue.entries.end()) << place.source;
        expectToFit(entry->translation, place);
    }
}

INSTANTIATE_TEST_SUITE_P(
    EveryLanguage, TextFitIn, testing::ValuesIn(catalogueLanguages()), [](const auto& suite) {
        return suite.param;
    });

} // namespace
} // namespace orlimo
