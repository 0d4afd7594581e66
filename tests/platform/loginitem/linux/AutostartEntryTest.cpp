#include "platform/loginitem/linux/AutostartEntry.h"

#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace orlimo {
namespace {

constexpr auto everyone = std::filesystem::perms(0755);

std::string descriptionOf(const std::optional<ServiceError>& error)
{
    return error ? error->localizedDescription : "no error";
}

class AutostartEntryTest : public testing::Test
{
protected:
    AutostartEntryTest()
    {
        // For the case that acts as another user.
        std::filesystem::permissions(home.path(), everyone);
        writeFile(program, "#!/bin/sh\n");
    }

    [[nodiscard]] LoginItemStatus statusWith(std::string_view content) const
    {
        writeFile(file, content);
        return entry.status();
    }

    [[nodiscard]] std::string expectedText(std::string_view userChoice = "") const
    {
        return "[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Orlimo\n"
               "Comment=Puts the verification code of an incoming message on the clipboard\n"
               "Icon=app.orlimo.Orlimo\n"
               "Exec=\"" +
               program.string() +
               "\" --launched-at-login\n"
               "TryExec=" +
               program.string() + "\nTerminal=false\n" + std::string(userChoice);
    }

    TemporaryFolder home;
    std::filesystem::path folder = home.path() / "config" / "autostart";
    std::filesystem::path file = folder / "app.orlimo.Orlimo.desktop";
    std::filesystem::path program = home.path() / "program";
    AutostartEntry entry{folder, program};
};

TEST_F(AutostartEntryTest, IsAddedAndRemoved)
{
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(descriptionOf(entry.remove()), file.string() + ": No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(folder.parent_path()));

    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(entry.status(), LoginItemStatus::enabled);
    EXPECT_EQ(contentOf(file), expectedText());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
    for (const auto& made : {folder, folder.parent_path()}) {
        EXPECT_EQ(std::filesystem::status(made).permissions(), std::filesystem::perms::owner_all);
    }

    EXPECT_EQ(descriptionOf(entry.remove()), "no error");
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(entry.remove()->code, ENOENT);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(AutostartEntryTest, StatusFollowsMarksOfDesktops)
{
    const auto off = LoginItemStatus::requiresApproval;
    const auto on = LoginItemStatus::enabled;
    for (const auto& [status, text] : std::vector<std::pair<LoginItemStatus, std::string>>{
             {off, "Hidden=true\n"},
             {off, "Hidden = true \n"},
             {off, "Hidden=1\n"},
             {off, "X-GNOME-Autostart-enabled=false\n"},
             {off, "X-GNOME-Autostart-enabled =\tfalse\r\n"},
             {off, "X-GNOME-Autostart-enabled=0"},
             {off, "Hidden=false\nX-GNOME-Autostart-enabled=false\n"},
             {off, "Hidden=true\nX-GNOME-Autostart-enabled=true\n"},
             {off, "Hidden=false\nHidden=true\n"},
             {on, ""},
             {on, "Hidden=false\n"},
             {on, "Hidden=\n"},
             {on, "Hidden=TRUE\n"},
             {on, "Hidden=true false\n"},
             {on, "#Hidden=true\n"},
             {on, "X-GNOME-Autostart-enabled=true\n"},
             {on, "X-GNOME-Autostart-enabled=\n"},
             {on, "Hidden=true\nHidden=false\n"},
             {on, "X-GNOME-Autostart-enabled=false\nX-GNOME-Autostart-enabled=true\n"},
             {on, "[Other]\nHidden=true\nX-GNOME-Autostart-enabled=false\n"}})
    {
        EXPECT_EQ(statusWith("[Desktop Entry]\nType=Application\n" + text), status) << text;
    }
    EXPECT_EQ(statusWith(""), on);
}

TEST_F(AutostartEntryTest, AddReplacesEntryButKeepsUsersMarks)
{
    const std::string group = "[Desktop Entry]\n";
    for (const auto& [old, marks] : std::vector<std::pair<std::string, std::string>>{
             {group + "Exec=/an/old/place\nTryExec=/an/old/place\nX-Other=1\n", ""},
             {group + " X-GNOME-Autostart-enabled =  true \nHidden=false\nExec=old\nHidden=true\n"
                      "[Other]\nHidden=false\n",
              "Hidden=true\nX-GNOME-Autostart-enabled=true\n"},
             {group + "X-GNOME-Autostart-enabled=false\n", "X-GNOME-Autostart-enabled=false\n"}})
    {
        const auto status = statusWith(old);
        for (int time = 0; time < 2; ++time) {
            EXPECT_EQ(descriptionOf(entry.add()), "no error");
            EXPECT_EQ(contentOf(file), expectedText(marks));
        }
        EXPECT_EQ(entry.status(), status);
    }
    for (const std::string& unparsable :
         {"Hidden=true\n" + group, std::string("garbage"), group + "Hidden\n"})
    {
        EXPECT_EQ(statusWith(unparsable), LoginItemStatus::notRegistered) << unparsable;
        EXPECT_EQ(descriptionOf(entry.add()), "no error");
        EXPECT_EQ(contentOf(file), expectedText());
    }
}

TEST_F(AutostartEntryTest, MissingProgramFolderOrEmptyPathIsNotFound)
{
    writeFile(file, "[Desktop Entry]\nHidden=true\n");
    std::filesystem::remove(program);
    for (const std::filesystem::path& path : {program, home.path(), std::filesystem::path()}) {
        const AutostartEntry missing(folder, path);
        EXPECT_EQ(missing.status(), LoginItemStatus::notFound);
        const auto error = missing.add();
        EXPECT_EQ(
            descriptionOf(error),
            (path.empty() ? "/proc/self/exe" : path.string()) + ": No such file or directory");
        EXPECT_EQ(error->code, ENOENT);
    }
    EXPECT_EQ(contentOf(file), "[Desktop Entry]\nHidden=true\n");

    EXPECT_EQ(descriptionOf(entry.remove()), "no error");
    EXPECT_EQ(entry.status(), LoginItemStatus::notFound);
}

TEST_F(AutostartEntryTest, PathThatIsNotUtf8IsRefused)
{
    const auto odd = home.path() / "od\xFF\x64";
    writeFile(odd, "#!/bin/sh\n");
    for (const auto& error :
         {AutostartEntry(folder, odd).add(), AutostartEntry(odd, program).add()}) {
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(error->code, EILSEQ);
        EXPECT_THAT(
            error->localizedDescription,
            testing::MatchesRegex(
                home.path().string() + "/od\xEF\xBF\xBD"
                                       "d.*: Invalid or incomplete multibyte or wide character"));
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(AutostartEntryTest, FileThatCannotBeReadIsNotRegisteredAndStays)
{
    const auto other = home.path() / "irregular";
    const auto expectKept = [this](const std::filesystem::path& target, const char* reason) {
        std::filesystem::create_symlink(target, file);
        EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered) << target;
        EXPECT_EQ(descriptionOf(entry.add()), file.string() + ": " + reason);
        EXPECT_EQ(std::filesystem::read_symlink(file), target);
        EXPECT_EQ(descriptionOf(entry.remove()), "no error");
        EXPECT_FALSE(std::filesystem::is_symlink(file));
    };
    std::filesystem::create_directories(folder);
    expectKept(home.path() / "missing" / "entry", "No such file or directory");
    expectKept(file, "Too many levels of symbolic links");
    expectKept(home.path(), "Is a directory");
    expectKept("/proc/self/mem", "Input/output error");
    // Never the real device: replacing it would harm the whole machine.
    for (const mode_t type : {mode_t{S_IFIFO}, mode_t{S_IFCHR}}) {
        if (::mknod(other.c_str(), type | 0666U, makedev(1, 3)) != 0) {
            GTEST_SKIP() << "only the superuser can make a device";
        }
        expectKept(other, "File exists");
        EXPECT_FALSE(std::filesystem::is_regular_file(other));
        std::filesystem::remove(other);
    }
}

TEST_F(AutostartEntryTest, LinkTargetIsReplacedAndOnlyLinkIsRemoved)
{
    const auto target = home.path() / "dotfiles" / "entry";
    writeFile(target, "[Desktop Entry]\nHidden=true\n");
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink("../../dotfiles/entry", file);
    EXPECT_EQ(entry.status(), LoginItemStatus::requiresApproval);
    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(descriptionOf(entry.remove()), "no error");
    EXPECT_FALSE(std::filesystem::is_symlink(file));
    EXPECT_EQ(contentOf(target), expectedText("Hidden=true\n"));
}

TEST_F(AutostartEntryTest, FileWithoutPermissionIsNotRegisteredAndStays)
{
    writeFile(file, "[Desktop Entry]\nHidden=true\n");
    std::filesystem::permissions(folder.parent_path(), everyone);
    std::filesystem::permissions(folder, std::filesystem::perms(0777));
    std::filesystem::permissions(file, std::filesystem::perms(0222));
    {
        const UnprivilegedScope unprivileged;
        EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
        EXPECT_EQ(descriptionOf(entry.add()), file.string() + ": Permission denied");
    }
    EXPECT_EQ(contentOf(file), "[Desktop Entry]\nHidden=true\n");
}

TEST_F(AutostartEntryTest, EntryOfOddNameIsValidAndStartsProgram)
{
    const auto output = home.path() / "output";
    for (const std::string name :
         {"orlimo",
          "two words",
          " blanks around ",
          "\"double\" 'single'",
          "`touch x` $(touch x)",
          "$HOME ${HOME} ~",
          "back\\slash \\n \\\\ \\s \\",
          "a;b&c|d<e>f*g?h#i(j)k",
          "line\nbreak\ttab\rreturn",
          "[Desktop Entry]",
          "Größe 鍵 \xF0\x9F\x94\x91",
          "a=b",
          "%f %% %U %"})
    {
        SCOPED_TRACE(name);
        const auto odd = home.path() / "bin" / name;
        writeFile(
            odd,
            "#!/bin/sh\n"
            "printf '%s\\n' \"$#\" \"$0\" \"$@\" > \"$ORLIMO_TEST_OUTPUT.part\"\n"
            "mv \"$ORLIMO_TEST_OUTPUT.part\" \"$ORLIMO_TEST_OUTPUT\"\n");
        std::filesystem::permissions(odd, everyone);
        const AutostartEntry oddEntry(folder, odd);
        writeFile(file, "[Desktop Entry]\nHidden=false\nX-GNOME-Autostart-enabled=true\n");
        ASSERT_EQ(descriptionOf(oddEntry.add()), "no error");
        ChildProcess validation("desktop-file-validate", {.arguments = {file.string()}});
        EXPECT_EQ(validation.awaitEnd().status, 0);
        EXPECT_EQ(validation.output() + validation.errors(), "") << contentOf(file);
        if (name.starts_with('%')) {
            continue; // `gio` does not unescape it in the name of the program that it looks for
        }
        ChildProcess launcher(
            "gio",
            {.arguments = {"launch", file.string()},
             .environment = {{"ORLIMO_TEST_OUTPUT", output.string()}}});
        ASSERT_EQ(launcher.awaitEnd().status, 0) << launcher.errors() << contentOf(file);
        ASSERT_TRUE(await([&] { return std::filesystem::exists(output); })) << contentOf(file);
        EXPECT_EQ(contentOf(output), "1\n" + odd.string() + "\n--launched-at-login\n");
        std::filesystem::remove(output);
    }
}

} // namespace
} // namespace orlimo
