#include "platform/ApplicationIdentity.h"
#include "tests/packaging/CommandResult.h"
#include "tests/resources/translations/CatalogueFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <regex>

#include <sys/stat.h>

namespace orlimo {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

const std::string identifier(identity::applicationIdentifier);

/// What the build installs, below a folder in the place of the root.
class InstalledFiles : public testing::Test
{
protected:
    InstalledFiles()
    {
        const auto installation = CommandResult::of(
            ORLIMO_CMAKE,
            {
                .arguments = {"--install", ORLIMO_BUILD_FOLDER},
                .environment = {{"DESTDIR", root.path().string()}},
                // As an administrator installs; folders follow it.
                .beforeStart = [] { ::umask(022); },
            });
        EXPECT_EQ(installation.status, 0) << installation.text();
        desktopEntry = contentOf(prefix / "share/applications" / (identifier + ".desktop"));
        metainfo = contentOf(prefix / "share/metainfo" / (identifier + ".metainfo.xml"));
    }

    /// Every folder, with a slash at its end, and file below the prefix, with its permissions.
    [[nodiscard]] std::map<std::string, std::string> installed() const
    {
        std::map<std::string, std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(prefix)) {
            const auto mode = static_cast<unsigned>(entry.symlink_status().permissions());
            found.emplace(
                entry.path().lexically_relative(prefix).string() +
                    (entry.is_directory() ? "/" : ""),
                std::to_string(mode / 64) + std::to_string(mode / 8 % 8) +
                    std::to_string(mode % 8));
        }
        return found;
    }

    TemporaryFolder root;
    std::filesystem::path prefix =
        root.path() / std::filesystem::path(ORLIMO_INSTALL_PREFIX).relative_path();
    std::string desktopEntry;
    std::string metainfo;
};

TEST_F(InstalledFiles, AreTheseReadableByEveryoneAndComplete)
{
    std::map<std::string, std::string> expected{
        {"bin/", "755"},
        {"bin/orlimo", "755"},
        {"share/applications/app.orlimo.Orlimo.desktop", "644"},
        {"share/dbus-1/services/app.orlimo.Orlimo.service", "644"},
        {"share/doc/orlimo/LICENSE", "644"},
        {"share/doc/orlimo/README.md", "644"},
        {"share/icons/hicolor/scalable/apps/app.orlimo.Orlimo.svg", "644"},
        {"share/icons/hicolor/symbolic/apps/app.orlimo.Orlimo-symbolic.svg", "644"},
        {"share/man/man1/orlimo.1", "644"},
        {"share/metainfo/app.orlimo.Orlimo.metainfo.xml", "644"},
    };
    const auto files = expected;
    for (const auto& [name, mode] : files) {
        for (auto slash = name.find('/'); slash != std::string::npos;
             slash = name.find('/', slash + 1)) {
            expected.emplace(name.substr(0, slash + 1), "755");
        }
    }
    EXPECT_EQ(installed(), expected);
    for (const auto& [name, mode] : files) {
        if (name.find("orlimo.") != std::string::npos) {
            EXPECT_THAT(contentOf(prefix / name), Not(ContainsRegex("@[A-Z_]+@"))) << name;
        }
    }
    const auto version = CommandResult::of(prefix / "bin/orlimo", {.arguments = {"--version"}});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, "Orlimo " + std::string(identity::version) + "\n");
}

TEST_F(InstalledFiles, DesktopEntryAndServiceStartTheProgram)
{
    const std::string program = std::string(ORLIMO_INSTALL_PREFIX) + "/bin/orlimo";
    for (const std::string& line :
         {"Name=" + std::string(identity::applicationName),
          "Icon=" + identifier,
          "Exec=" + program,
          "TryExec=" + program,
          // What Qt makes of the program's name on X11.
          "StartupWMClass=" + std::string(identity::applicationName),
          std::string("DBusActivatable=true"),
          std::string("Actions=quit;"),
          std::string("[Desktop Action quit]")})
    {
        EXPECT_THAT(desktopEntry, HasSubstr("\n" + line + "\n"));
    }
    EXPECT_EQ(
        contentOf(prefix / ("share/dbus-1/services/" + identifier + ".service")),
        "[D-BUS Service]\nName=" + identifier + "\nExec=" + program + "\n");
}

/// The system names a language by its country where the catalogue names it by its script.
std::string localeName(const std::string& language)
{
    if (language == "zh_Hans") {
        return "zh_CN";
    }
    return language == "zh_Hant" ? "zh_TW" : language;
}

TEST_F(InstalledFiles, AreTranslatedIntoTheLanguagesOfTheProgram)
{
    const auto count = [](const std::string& text, const std::string& pattern) {
        const std::regex regex(pattern);
        return std::distance(std::sregex_iterator(text.begin(), text.end(), regex), {});
    };
    const auto paragraphs = count(metainfo, "<p>[^<]");
    EXPECT_GE(paragraphs, 1);
    for (const std::string& language : catalogueLanguages()) {
        const std::string locale = localeName(language);
        for (const std::string key : {"GenericName", "Keywords"}) {
            EXPECT_THAT(desktopEntry, ContainsRegex("\n" + key + "\\[" + locale + "\\]=[^\n]"));
        }
        EXPECT_EQ(count(metainfo, "<p xml:lang=\"" + locale + "\">[^<]"), paragraphs) << locale;
        std::smatch summary;
        ASSERT_TRUE(std::regex_search(
            metainfo, summary, std::regex("<summary xml:lang=\"" + locale + "\">([^<]+)<")))
            << locale;
        EXPECT_THAT(
            desktopEntry, HasSubstr("\nComment[" + locale + "]=" + summary[1].str() + "\n"));
        for (const auto& entry : readCatalogue(catalogueFileOf(language))) {
            if (entry.source == QStringLiteral("Quit")) {
                EXPECT_THAT(
                    desktopEntry,
                    HasSubstr("\nName[" + locale + "]=" + entry.translation.toStdString() + "\n"));
            }
        }
    }
}

TEST_F(InstalledFiles, SymbolicIconTakesTheDesktopsColor)
{
    const std::string symbol =
        contentOf(prefix / "share/icons/hicolor/symbolic/apps" / (identifier + "-symbolic.svg"));
    EXPECT_THAT(symbol, HasSubstr("width=\"16\" height=\"16\""));
    EXPECT_THAT(symbol, HasSubstr("<style id=\"current-color-scheme\" type=\"text/css\">"));
    EXPECT_THAT(symbol, HasSubstr("<path class=\"ColorScheme-Text\" fill=\"currentColor\""));
}

} // namespace
} // namespace orlimo
