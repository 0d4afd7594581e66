#include "tests/packaging/macos/PropertyList.h"

#include "tests/packaging/CommandResult.h"

#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace orlimo {

namespace {

QVariant readValue(QXmlStreamReader& reader)
{
    const QString kind = reader.name().toString();
    if (kind == QStringLiteral("true") || kind == QStringLiteral("false")) {
        reader.skipCurrentElement();
        return kind == QStringLiteral("true");
    }
    if (kind == QStringLiteral("string")) {
        return reader.readElementText();
    }
    EXPECT_EQ(kind, QStringLiteral("array"));
    QStringList texts;
    while (reader.readNextStartElement()) {
        texts.push_back(reader.readElementText());
    }
    return texts;
}

} // namespace

PropertyList::PropertyList(const std::filesystem::path& file)
{
    const auto reading = CommandResult::of(
        "/usr/bin/env", {.arguments = {"plistutil", "-f", "xml", "-i", file.string()}});
    EXPECT_EQ(reading.status, 0) << reading.text();
    QXmlStreamReader reader(QByteArray::fromStdString(reading.output));
    EXPECT_TRUE(reader.readNextStartElement()) << reading.text();
    EXPECT_TRUE(reader.readNextStartElement()) << reading.text();
    while (reader.readNextStartElement()) {
        EXPECT_EQ(reader.name(), QStringLiteral("key"));
        const QString key = reader.readElementText();
        EXPECT_FALSE(all.contains(key)) << key.toStdString();
        EXPECT_TRUE(reader.readNextStartElement());
        all.insert(key, readValue(reader));
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
}

std::string PropertyList::text(const char* key) const
{
    return all.value(QLatin1String(key)).toString().toStdString();
}

} // namespace orlimo
