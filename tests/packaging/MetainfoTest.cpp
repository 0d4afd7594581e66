#include "platform/ApplicationIdentity.h"
#include "tests/packaging/CommandResult.h"
#include "tests/packaging/InstalledTree.h"
#include "tests/packaging/LocaleName.h"
#include "tests/resources/translations/CatalogueFile.h"

#include <QXmlStreamReader>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// What software centres are told of the program.
class Metainfo : public testing::Test
{
protected:
    struct Element
    {
        std::string name;
        std::map<std::string, std::string> attributes{};
        std::string text{};
    };

    void SetUp() override
    {
        QXmlStreamReader reader(QByteArray::fromStdString(contentOf(file)));
        while (reader.readNext() != QXmlStreamReader::Invalid && !reader.atEnd()) {
            if (reader.isStartElement()) {
                elements.push_back({.name = reader.name().toString().toStdString()});
                for (const auto& attribute : reader.attributes()) {
                    elements.back().attributes.emplace(
                        attribute.qualifiedName().toString().toStdString(),
                        attribute.value().toString().toStdString());
                }
            } else if (reader.isCharacters() && !reader.isWhitespace()) {
                elements.back().text += reader.text().toString().simplified().toStdString();
            }
        }
        ASSERT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    }

    /// The texts of the elements of that name, in the language, English when it is empty.
    [[nodiscard]] std::vector<std::string>
    texts(const std::string& name, const std::string& language = "") const
    {
        std::vector<std::string> found;
        for (const Element& element : elements) {
            const auto tag = element.attributes.find("xml:lang");
            const bool spoken =
                tag == element.attributes.end() ? language.empty() : tag->second == language;
            if (element.name == name && spoken) {
                found.push_back(element.text);
            }
        }
        return found;
    }

    /// The value of an attribute of the first element of that name.
    [[nodiscard]] std::string attribute(const std::string& name, const std::string& key) const
    {
        for (const Element& element : elements) {
            const auto value = element.attributes.find(key);
            if (element.name == name && value != element.attributes.end()) {
                return value->second;
            }
        }
        return "";
    }

    InstalledTree tree;
    std::filesystem::path file = tree.file("share/metainfo/app.orlimo.Orlimo.metainfo.xml");
    std::vector<Element> elements;
};

TEST_F(Metainfo, IsValid)
{
    const auto validation = CommandResult::of(
        "/usr/bin/appstreamcli",
        {.arguments = {"validate", "--no-net", "--pedantic", "--no-color", file.string()}});
    EXPECT_EQ(validation.status, 0) << validation.text();
    for (const char* complaint : {"E: ", "W: ", "I: "}) {
        EXPECT_THAT(validation.output, Not(HasSubstr(complaint)));
    }
}

TEST_F(Metainfo, NamesTheProgram)
{
    const std::string id(identity::applicationIdentifier);
    EXPECT_THAT(texts("id"), ElementsAre(id));
    EXPECT_EQ(texts("name").front(), identity::applicationName);
    EXPECT_THAT(texts("launchable"), ElementsAre(id + ".desktop"));
    EXPECT_THAT(texts("dbus"), ElementsAre(id));
    EXPECT_THAT(texts("binary"), ElementsAre("orlimo"));
    EXPECT_THAT(texts("url"), ElementsAre(std::string(identity::website)));
    EXPECT_THAT(texts("project_license"), ElementsAre("MIT"));
    EXPECT_EQ(attribute("release", "version"), identity::version);
}

TEST_F(Metainfo, SpeaksTheLanguagesOfTheProgram)
{
    EXPECT_EQ(texts("summary").size(), 1u);
    EXPECT_GE(texts("p").size(), 1u);
    for (const std::string& language : catalogueLanguages()) {
        for (const char* name : {"summary", "p"}) {
            const auto translations = texts(name, localeName(language));
            EXPECT_EQ(translations.size(), texts(name).size()) << name << " in " << language;
            EXPECT_THAT(translations, Not(testing::Contains(""))) << name << " in " << language;
        }
    }
}

TEST_F(Metainfo, SaysWhatTheDesktopEntrySays)
{
    const std::string entry = contentOf(tree.file("share/applications/app.orlimo.Orlimo.desktop"));
    EXPECT_THAT(entry, HasSubstr("\nComment=" + texts("summary").front() + "\n"));
    for (const std::string& language : catalogueLanguages()) {
        const std::string locale = localeName(language);
        EXPECT_THAT(
            entry,
            HasSubstr("\nComment[" + locale + "]=" + texts("summary", locale).front() + "\n"));
    }
}

} // namespace
} // namespace orlimo
