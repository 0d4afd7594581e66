#include "tests/resources/translations/CatalogueFile.h"

#include "resources/translations/Languages.h"

#include <QFile>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace orlimo {

CatalogueFile CatalogueFile::read(const std::filesystem::path& file)
{
    CatalogueFile catalogue;
    QFile bytes(QString::fromStdString(file.string()));
    EXPECT_TRUE(bytes.open(QFile::ReadOnly)) << file;
    QXmlStreamReader reader(&bytes);
    Entry entry;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (reader.name() == u"TS") {
            catalogue.language = reader.attributes().value(QLatin1String("language")).toString();
            catalogue.sourceLanguage =
                reader.attributes().value(QLatin1String("sourcelanguage")).toString();
        } else if (reader.name() == u"name") {
            entry.context = reader.readElementText();
        } else if (reader.name() == u"source") {
            entry.source = reader.readElementText();
        } else if (reader.name() == u"translation") {
            entry.type = reader.attributes().value(QLatin1String("type")).toString();
            entry.translation = reader.readElementText();
            catalogue.entries.push_back(entry);
        }
    }
    EXPECT_FALSE(reader.hasError()) << file << ": " << reader.errorString().toStdString();
    return catalogue;
}

std::multiset<std::pair<std::string, std::string>> CatalogueFile::texts() const
{
    std::multiset<std::pair<std::string, std::string>> found;
    for (const Entry& entry : entries) {
        found.emplace(entry.context.toStdString(), entry.source.toStdString());
    }
    return found;
}

std::filesystem::path catalogueFileOf(const std::string& language)
{
    return std::filesystem::path(ORLIMO_CATALOGUE_FOLDER) / ("orlimo_" + language + ".ts");
}

const std::vector<std::string>& catalogueLanguages()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> found;
        for (const Language& language : supportedLanguages) {
            found.push_back(language.catalogue.toString().toStdString());
        }
        return found;
    }();
    return names;
}

} // namespace orlimo
