#include "resources/Artwork.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orlimo {
namespace {

/// One element of a drawing.
struct Element
{
    QString name;
    QXmlStreamAttributes attributes;
};

/// Every element of the drawing, in order. A file that is not well-formed is a test failure.
std::vector<Element> elementsOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    QXmlStreamReader reader(&file);
    std::vector<Element> elements;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            elements.push_back({reader.name().toString(), reader.attributes()});
        }
    }
    EXPECT_FALSE(reader.hasError()) << path.toStdString() << reader.errorString().toStdString();
    return elements;
}

std::vector<std::string> drawings()
{
    EXPECT_TRUE(Artwork(u"images", u"logo").exists()); // takes in the resources
    std::vector<std::string> files;
    for (const QString& folder : {QStringLiteral(":/images"), QStringLiteral(":/symbols")}) {
        QDirIterator entries(folder);
        while (entries.hasNext()) {
            files.push_back(entries.next().toStdString());
        }
    }
    return files;
}

void expectOnlyShapes(const QString& file)
{
    const QSet<QString> shapes{
        QStringLiteral("svg"),
        QStringLiteral("defs"),
        QStringLiteral("linearGradient"),
        QStringLiteral("stop"),
        QStringLiteral("g"),
        QStringLiteral("path"),
        QStringLiteral("rect"),
        QStringLiteral("circle")};
    const QSet<QString> foreign{
        QStringLiteral("class"),
        QStringLiteral("style"),
        QStringLiteral("filter"),
        QStringLiteral("mask"),
        QStringLiteral("clip-path"),
        QStringLiteral("href")};
    for (const Element& element : elementsOf(file)) {
        EXPECT_TRUE(shapes.contains(element.name)) << element.name.toStdString();
        for (const QXmlStreamAttribute& attribute : element.attributes) {
            EXPECT_FALSE(foreign.contains(attribute.name().toString()))
                << attribute.name().toString().toStdString();
        }
    }
}

/// The small profile of the format has no arcs.
void expectPathsWithoutArcs(const QString& file)
{
    const QRegularExpression commands(QStringLiteral("^[MmLlHhVvCcSsQqTtZz0-9eE., \\n-]*$"));
    for (const Element& element : elementsOf(file)) {
        const QString path = element.attributes.value(QLatin1String("d")).toString();
        EXPECT_TRUE(commands.match(path).hasMatch()) << path.toStdString();
    }
}

void expectCanvas(const Element& root)
{
    const QXmlStreamAttributes& canvas = root.attributes;
    EXPECT_EQ(
        canvas.value(QLatin1String("viewBox")).toString(),
        QStringLiteral("0 0 %1 %2")
            .arg(canvas.value(QLatin1String("width")), canvas.value(QLatin1String("height"))));
}

TEST(DrawingFileTest, AreTheOnesThatTheProgramShows)
{
    EXPECT_THAT(
        drawings(),
        testing::UnorderedElementsAre(
            ":/images/StatusBarIcon.svg",
            ":/images/helper.svg",
            ":/images/logo.svg",
            ":/symbols/ellipsis.bubble.fill.svg",
            ":/symbols/hand.raised.fill.svg",
            ":/symbols/slider.horizontal.2.square.svg"));
}

TEST(DrawingFileTest, HoldShapesOnly)
{
    for (const std::string& file : drawings()) {
        SCOPED_TRACE(file);
        expectOnlyShapes(QString::fromStdString(file));
        expectPathsWithoutArcs(QString::fromStdString(file));
    }
}

TEST(DrawingFileTest, FillTheirCanvas)
{
    for (const std::string& file : drawings()) {
        SCOPED_TRACE(file);
        expectCanvas(elementsOf(QString::fromStdString(file)).at(0));
    }
}

TEST(DrawingFileTest, OfSymbolsLieOnOneGrid)
{
    for (const std::string& file : drawings()) {
        if (file.starts_with(":/symbols/")) {
            const Element root = elementsOf(QString::fromStdString(file)).at(0);
            EXPECT_EQ(
                root.attributes.value(QLatin1String("viewBox")).toString(),
                QStringLiteral("0 0 18 18"))
                << file;
        }
    }
}

} // namespace
} // namespace orlimo
