#include "platform/ApplicationIdentity.h"
#include "platform/preferences/linux/KeyFile.h"
#include "tests/packaging/CommandResult.h"
#include "tests/packaging/InstalledTree.h"
#include "tests/packaging/LocaleName.h"
#include "tests/resources/translations/CatalogueFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

using testing::HasSubstr;

/// The file that desktops show and start the program by.
class DesktopEntryFile : public testing::Test
{
protected:
    [[nodiscard]] std::string value(const std::string& key) const
    {
        const auto entry = KeyFile::parse(content);
        return entry ? entry->value("Desktop Entry", key).value_or("") : "not parsable";
    }

    InstalledTree tree;
    std::filesystem::path file = tree.file("share/applications/app.orlimo.Orlimo.desktop");
    std::string content = contentOf(file);
};

TEST_F(DesktopEntryFile, IsValid)
{
    const auto validation = CommandResult::of(
        "/usr/bin/desktop-file-validate", {.arguments = {"--warn-kde", file.string()}});
    EXPECT_EQ(validation.status, 0);
    EXPECT_EQ(validation.text(), "");
}

TEST_F(DesktopEntryFile, NamesTheProgram)
{
    EXPECT_EQ(value("Name"), identity::applicationName);
    EXPECT_EQ(value("Icon"), identity::applicationIdentifier);
    EXPECT_EQ(value("Exec"), InstalledTree::programPath());
    EXPECT_EQ(value("TryExec"), InstalledTree::programPath());
    // What the toolkit makes of the program's name on X11.
    EXPECT_EQ(value("StartupWMClass"), identity::applicationName);
}

TEST_F(DesktopEntryFile, HasTheBusStartTheProgram)
{
    EXPECT_EQ(value("DBusActivatable"), "true");
    EXPECT_EQ(
        contentOf(tree.file("share/dbus-1/services/app.orlimo.Orlimo.service")),
        "[D-BUS Service]\nName=" + std::string(identity::applicationIdentifier) +
            "\nExec=" + InstalledTree::programPath() + "\n");
}

TEST_F(DesktopEntryFile, SpeaksTheLanguagesOfTheProgram)
{
    for (const std::string& language : catalogueLanguages()) {
        for (const std::string key : {"GenericName", "Comment", "Keywords"}) {
            const std::string translation = value(key + "[" + localeName(language) + "]");
            EXPECT_NE(translation, "") << key << " in " << language;
            EXPECT_NE(translation, value(key)) << key << " in " << language;
        }
    }
}

TEST_F(DesktopEntryFile, QuitsInTheWordsOfTheProgram)
{
    EXPECT_EQ(value("Actions"), "quit;");
    EXPECT_THAT(content, HasSubstr("[Desktop Action quit]\n"));
    for (const std::string& language : catalogueLanguages()) {
        for (const auto& entry : CatalogueFile::read(catalogueFileOf(language)).entries) {
            if (entry.source == QStringLiteral("Quit")) {
                EXPECT_THAT(
                    content,
                    HasSubstr(
                        "\nName[" + localeName(language) + "]=" + entry.translation.toStdString() +
                        "\n"));
            }
        }
    }
}

} // namespace
} // namespace orlimo
