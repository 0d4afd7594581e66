#include "tests/resources/translations/CatalogueFile.h"

#include "resources/translations/Languages.h"

#include <QFile>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace orlimo {

std::vector<CatalogueEntry> readCatalogue(const std::filesystem::path& file)
{
    std::vector<CatalogueEntry> entries;
    QFile bytes(QString::fromStdString(file.string()));
    EXPECT_TRUE(bytes.open(QFile::ReadOnly)) << file;
    QXmlStreamReader reader(&bytes);
    CatalogueEntry entry;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (reader.name() == u"name") {
            entry.context = reader.readElementText();
        } else if (reader.name() == u"source") {
            entry.source = reader.readElementText();
        } else if (reader.name() == u"translation") {
            entry.type = reader.attributes().value(QLatin1String("type")).toString();
            entry.translation = reader.readElementText();
            entries.push_back(entry);
        }
    }
    EXPECT_FALSE(reader.hasError()) << file << ": " << reader.errorString().toStdString();
    return entries;
}

std::filesystem::path catalogueFileOf(const std::string& language)
{
    return std::filesystem::path(ORLIMO_CATALOGUE_FOLDER) / ("orlimo_" + language + ".ts");
}

std::vector<std::string> catalogueLanguages()
{
    std::vector<std::string> languages;
    for (const Language& language : supportedLanguages) {
        languages.push_back(language.catalogue.toString().toStdString());
    }
    return languages;
}

} // namespace orlimo
