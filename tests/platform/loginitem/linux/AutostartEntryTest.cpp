#include "platform/loginitem/linux/AutostartEntry.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto everyone = std::filesystem::perms(0755);

std::string descriptionOf(const std::optional<ServiceError>& error)
{
    return error ? error->localizedDescription : "no error";
}

std::vector<std::string> namesIn(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    return names;
}

class AutostartEntryTest : public testing::Test
{
protected:
    AutostartEntryTest()
    {
        // For the cases that act as another user.
        std::filesystem::permissions(home.path(), everyone);
        writeFile(program, "#!/bin/sh\n");
    }

    /// Writes `content` in the entry's place.
    void write(std::string_view content) const { writeFile(file, content); }

    [[nodiscard]] LoginItemStatus statusWith(std::string_view content) const
    {
        write(content);
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

    /// What `operation` says when a user without the superuser's rights does it.
    [[nodiscard]] static std::string
    asUnprivilegedUser(const std::function<std::string()>& operation)
    {
        const auto run = runForked([&operation] {
            becomeUnprivilegedUser();
            (void)std::fputs(operation().c_str(), stdout);
        });
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.errors, "");
        return run.output;
    }

    TemporaryFolder home;
    std::filesystem::path folder = home.path() / "config" / "autostart";
    std::filesystem::path file = folder / "app.orlimo.Orlimo.desktop";
    std::filesystem::path program = home.path() / "program";
    AutostartEntry entry{folder, program};
};

TEST_F(AutostartEntryTest, ComesAndGoes)
{
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(entry.status(), LoginItemStatus::enabled);
    EXPECT_EQ(descriptionOf(entry.remove()), "no error");
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(AutostartEntryTest, IsADesktopFileThatStartsTheProgram)
{
    ASSERT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(contentOf(file), expectedText());
    EXPECT_THAT(namesIn(folder), ElementsAre("app.orlimo.Orlimo.desktop"));
}

TEST_F(AutostartEntryTest, MakesTheFoldersForTheUserAlone)
{
    ASSERT_EQ(descriptionOf(entry.add()), "no error");
    for (const auto& made : {folder, folder.parent_path()}) {
        EXPECT_EQ(std::filesystem::status(made).permissions(), std::filesystem::perms::owner_all);
    }
}

TEST_F(AutostartEntryTest, LeavesOtherEntriesAlone)
{
    writeFile(folder / "other.desktop", "other");
    ASSERT_EQ(descriptionOf(entry.add()), "no error");
    ASSERT_EQ(descriptionOf(entry.remove()), "no error");
    EXPECT_EQ(contentOf(folder / "other.desktop"), "other");
    EXPECT_THAT(namesIn(folder), ElementsAre("other.desktop"));
}

TEST_F(AutostartEntryTest, ReadingTheStatusMakesNothing)
{
    (void)entry.status();
    EXPECT_FALSE(std::filesystem::exists(folder.parent_path()));
}

TEST_F(AutostartEntryTest, IsWrittenAnewEachTime)
{
    write("[Desktop Entry]\nExec=/an/old/place\nTryExec=/an/old/place\nX-Other=1\n");
    EXPECT_EQ(entry.status(), LoginItemStatus::enabled);
    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(contentOf(file), expectedText());
    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(contentOf(file), expectedText());
}

TEST_F(AutostartEntryTest, NeedsTheUsersApprovalWhileItIsSwitchedOff)
{
    for (const char* off :
         {"Hidden=true\n",
          "Hidden = true \n",
          "Hidden=1\n",
          "X-GNOME-Autostart-enabled=false\n",
          "X-GNOME-Autostart-enabled =\tfalse\r\n",
          "X-GNOME-Autostart-enabled=0",
          "Hidden=false\nX-GNOME-Autostart-enabled=false\n",
          "Hidden=true\nX-GNOME-Autostart-enabled=true\n",
          "Hidden=false\nHidden=true\n"})
    {
        EXPECT_EQ(
            statusWith(std::string("[Desktop Entry]\nType=Application\n") + off),
            LoginItemStatus::requiresApproval)
            << off;
    }
}

TEST_F(AutostartEntryTest, IsEnabledWhereNothingSwitchesItOff)
{
    for (const char* on :
         {"",
          "Hidden=false\n",
          "Hidden=\n",
          "Hidden=TRUE\n",
          "Hidden=true false\n",
          "#Hidden=true\n",
          "X-GNOME-Autostart-enabled=true\n",
          "X-GNOME-Autostart-enabled=\n",
          "Hidden=true\nHidden=false\n",
          "X-GNOME-Autostart-enabled=false\nX-GNOME-Autostart-enabled=true\n",
          "[Other]\nHidden=true\nX-GNOME-Autostart-enabled=false\n"})
    {
        EXPECT_EQ(
            statusWith(std::string("[Desktop Entry]\nType=Application\n") + on),
            LoginItemStatus::enabled)
            << on;
    }
    EXPECT_EQ(statusWith("Hidden=true\n[Desktop Entry]\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusWith(""), LoginItemStatus::enabled);
}

TEST_F(AutostartEntryTest, TheUsersMarksStayWhenItIsWrittenAnew)
{
    write("[Desktop Entry]\n X-GNOME-Autostart-enabled =  true \nHidden=false\nExec=old\n"
          "Hidden=true\n[Other]\nHidden=false\n");
    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(contentOf(file), expectedText("Hidden=true\nX-GNOME-Autostart-enabled=true\n"));
    EXPECT_EQ(entry.status(), LoginItemStatus::requiresApproval);

    write("[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(contentOf(file), expectedText("X-GNOME-Autostart-enabled=false\n"));
    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(contentOf(file), expectedText("X-GNOME-Autostart-enabled=false\n"));
    EXPECT_EQ(entry.status(), LoginItemStatus::requiresApproval);
}

TEST_F(AutostartEntryTest, IsRemovedWhateverTheUserHasMarked)
{
    write("[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(descriptionOf(entry.remove()), "no error");
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartEntryTest, RemovingWhatIsNotThereIsAnError)
{
    const auto withoutFolder = entry.remove();
    EXPECT_EQ(descriptionOf(withoutFolder), file.string() + ": No such file or directory");
    EXPECT_EQ(withoutFolder->code, ENOENT);
    std::filesystem::create_directories(folder);
    EXPECT_EQ(descriptionOf(entry.remove()), file.string() + ": No such file or directory");
}

TEST_F(AutostartEntryTest, OfAProgramThatIsGoneIsNotFound)
{
    ASSERT_EQ(descriptionOf(entry.add()), "no error");
    std::filesystem::remove(program);
    EXPECT_EQ(entry.status(), LoginItemStatus::notFound);

    write("[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(entry.status(), LoginItemStatus::notFound);
    const auto error = entry.add();
    EXPECT_EQ(descriptionOf(error), program.string() + ": No such file or directory");
    EXPECT_EQ(error->code, ENOENT);
    EXPECT_EQ(contentOf(file), "[Desktop Entry]\nHidden=true\n");

    EXPECT_EQ(descriptionOf(entry.remove()), "no error");
    EXPECT_EQ(entry.status(), LoginItemStatus::notFound);
}

TEST_F(AutostartEntryTest, OfAFolderOrOfNothingIsNotFound)
{
    const AutostartEntry ofFolder(folder, home.path());
    EXPECT_EQ(ofFolder.status(), LoginItemStatus::notFound);
    EXPECT_EQ(descriptionOf(ofFolder.add()), home.path().string() + ": No such file or directory");

    const AutostartEntry ofNothing(folder, "");
    EXPECT_EQ(ofNothing.status(), LoginItemStatus::notFound);
    EXPECT_EQ(descriptionOf(ofNothing.add()), "/proc/self/exe: No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(AutostartEntryTest, CannotNameAProgramWhosePathIsNoText)
{
    const auto nameless = home.path() / "pro\xFFgram";
    writeFile(nameless, "#!/bin/sh\n");
    const AutostartEntry ofNameless(folder, nameless);
    const auto error = ofNameless.add();
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->code, EILSEQ);
    EXPECT_EQ(
        error->localizedDescription,
        home.path().string() +
            "/pro\xEF\xBF\xBDgram: Invalid or incomplete multibyte or wide character");
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(AutostartEntryTest, IsNotWrittenElsewhereWhenTheFoldersNameIsNoText)
{
    const AutostartEntry inNameless(home.path() / "con\xFF" / "autostart", program);
    const auto error = inNameless.add();
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->code, EILSEQ);
    EXPECT_THAT(namesIn(home.path()), ElementsAre("program"));
}

TEST_F(AutostartEntryTest, ADirectoryInItsPlaceIsLeftAlone)
{
    std::filesystem::create_directories(file);
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(descriptionOf(entry.add()), file.string() + ": Is a directory");
    EXPECT_EQ(descriptionOf(entry.remove()), file.string() + ": Is a directory");
    EXPECT_TRUE(std::filesystem::is_directory(file));
}

TEST_F(AutostartEntryTest, APipeInItsPlaceBlocksNothing)
{
    std::filesystem::create_directories(folder);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    const auto run = runForked([this] {
        (void)std::fputs(
            entry.status() == LoginItemStatus::notRegistered ? "not registered, " : "other, ",
            stdout);
        (void)std::fputs(descriptionOf(entry.add()).c_str(), stdout);
    });
    EXPECT_EQ(run.output, "not registered, " + file.string() + ": File exists");
    EXPECT_TRUE(std::filesystem::is_fifo(file));
}

TEST_F(AutostartEntryTest, ALinkToADeviceIsNeverWrittenThrough)
{
    std::filesystem::create_directories(folder);
    // Never the real one: replacing it would harm the whole machine.
    const auto device = home.path() / "device";
    if (::mknod(device.c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0) {
        GTEST_SKIP() << "only the superuser can make a device";
    }
    std::filesystem::create_symlink(device, file);
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(descriptionOf(entry.add()), file.string() + ": File exists");
    EXPECT_TRUE(std::filesystem::is_character_file(device));
    EXPECT_TRUE(std::filesystem::is_symlink(file));
}

TEST_F(AutostartEntryTest, ALinkIsWrittenThroughAndRemovedAlone)
{
    const auto target = home.path() / "dotfiles" / "entry";
    writeFile(target, "[Desktop Entry]\nHidden=true\n");
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink("../../dotfiles/entry", file);
    EXPECT_EQ(entry.status(), LoginItemStatus::requiresApproval);

    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(contentOf(target), expectedText("Hidden=true\n"));

    EXPECT_EQ(descriptionOf(entry.remove()), "no error");
    EXPECT_FALSE(std::filesystem::is_symlink(file));
    EXPECT_EQ(contentOf(target), expectedText("Hidden=true\n"));
}

TEST_F(AutostartEntryTest, ADanglingLinkIsNoEntryUntilItIsWrittenThrough)
{
    const auto target = home.path() / "dotfiles" / "entry";
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink(target, file);
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(descriptionOf(entry.add()), file.string() + ": No such file or directory");
    EXPECT_TRUE(std::filesystem::is_symlink(file));

    std::filesystem::create_directories(target.parent_path());
    EXPECT_EQ(descriptionOf(entry.add()), "no error");
    EXPECT_EQ(contentOf(target), expectedText());
    EXPECT_EQ(entry.status(), LoginItemStatus::enabled);

    std::filesystem::remove(target);
    EXPECT_EQ(descriptionOf(entry.remove()), "no error") << "what it leads to may come back";
    EXPECT_FALSE(std::filesystem::is_symlink(file));
}

TEST_F(AutostartEntryTest, ALinkToItselfIsAnErrorAndCanBeRemoved)
{
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink(file, file);
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(descriptionOf(entry.add()), file.string() + ": Too many levels of symbolic links");
    EXPECT_EQ(descriptionOf(entry.remove()), "no error");
}

TEST_F(AutostartEntryTest, AFileInTheFoldersPlaceIsLeftAlone)
{
    writeFile(folder, "a file");
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(descriptionOf(entry.add()), folder.string() + ": File exists");
    EXPECT_EQ(descriptionOf(entry.remove()), file.string() + ": Not a directory");
    EXPECT_EQ(contentOf(folder), "a file");
}

TEST_F(AutostartEntryTest, AFileAboveTheFolderIsLeftAlone)
{
    writeFile(folder.parent_path(), "a file");
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(descriptionOf(entry.add()), folder.string() + ": Not a directory");
    EXPECT_EQ(contentOf(folder.parent_path()), "a file");
}

TEST_F(AutostartEntryTest, AFolderThatMayNotBeMadeIsAnError)
{
    std::filesystem::create_directories(folder.parent_path());
    std::filesystem::permissions(folder.parent_path(), std::filesystem::perms(0555));
    EXPECT_EQ(
        asUnprivilegedUser([this] { return descriptionOf(entry.add()); }),
        folder.string() + ": Permission denied");
    EXPECT_FALSE(std::filesystem::exists(folder));
    std::filesystem::permissions(folder.parent_path(), everyone);
}

TEST_F(AutostartEntryTest, AFolderThatMayNotBeWrittenIsAnError)
{
    std::filesystem::create_directories(folder);
    std::filesystem::permissions(folder.parent_path(), everyone);
    std::filesystem::permissions(folder, std::filesystem::perms(0555));
    EXPECT_EQ(
        asUnprivilegedUser([this] { return descriptionOf(entry.add()); }),
        file.string() + ": Permission denied");
    EXPECT_THAT(namesIn(folder), ElementsAre());
    std::filesystem::permissions(folder, everyone);
}

TEST_F(AutostartEntryTest, AnEntryInAFolderThatMayNotBeWrittenStays)
{
    ASSERT_EQ(descriptionOf(entry.add()), "no error");
    std::filesystem::permissions(folder.parent_path(), everyone);
    std::filesystem::permissions(folder, std::filesystem::perms(0555));
    std::filesystem::permissions(file, std::filesystem::perms(0666));
    EXPECT_EQ(
        asUnprivilegedUser([this] { return descriptionOf(entry.remove()); }),
        file.string() + ": Permission denied");
    EXPECT_EQ(
        asUnprivilegedUser([this] { return descriptionOf(entry.add()); }),
        file.string() + ": Permission denied");
    EXPECT_EQ(entry.status(), LoginItemStatus::enabled);
    EXPECT_EQ(contentOf(file), expectedText());
    std::filesystem::permissions(folder, everyone);
}

TEST_F(AutostartEntryTest, AFileThatMayNotBeReadIsNoEntryAndIsKept)
{
    write("[Desktop Entry]\nHidden=true\n");
    std::filesystem::permissions(folder.parent_path(), everyone);
    std::filesystem::permissions(folder, std::filesystem::perms(0777));
    std::filesystem::permissions(file, std::filesystem::perms(0222));
    EXPECT_EQ(
        asUnprivilegedUser([this] {
            return std::to_string(static_cast<int>(entry.status())) + " " +
                   descriptionOf(entry.add());
        }),
        "0 " + file.string() + ": Permission denied");
    std::filesystem::permissions(file, std::filesystem::perms(0644));
    EXPECT_EQ(contentOf(file), "[Desktop Entry]\nHidden=true\n");

    std::filesystem::permissions(file, std::filesystem::perms::none);
    EXPECT_EQ(asUnprivilegedUser([this] { return descriptionOf(entry.remove()); }), "no error");
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(AutostartEntryTest, AFileThatMayNotBeWrittenIsKept)
{
    write("[Desktop Entry]\nHidden=true\n");
    std::filesystem::permissions(folder.parent_path(), everyone);
    std::filesystem::permissions(folder, std::filesystem::perms(0777));
    std::filesystem::permissions(file, std::filesystem::perms(0444));
    const auto said = asUnprivilegedUser([this] { return descriptionOf(entry.add()); });
    EXPECT_THAT(said, testing::StartsWith(file.string() + ": "));
    EXPECT_THAT(said, HasSubstr("not writable"));
    EXPECT_EQ(contentOf(file), "[Desktop Entry]\nHidden=true\n");
}

TEST_F(AutostartEntryTest, AFullDeviceIsAnErrorAndKeepsWhatWasThere)
{
    std::filesystem::create_directories(folder);
    const auto run = runForked([this] {
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=4096") != 0)
        {
            ::_exit(77);
        }
        writeFile(file, "[Desktop Entry]\nHidden=true\n");
        (void)std::fputs(descriptionOf(entry.add()).c_str(), stdout);
        const bool isKept =
            contentOf(file) == "[Desktop Entry]\nHidden=true\n" && namesIn(folder).size() == 1;
        (void)std::fputs(isKept ? ", kept" : ", lost", stdout);
    });
    if (run.status == 77) {
        GTEST_SKIP() << "only the superuser can mount a small device";
    }
    EXPECT_EQ(run.output, file.string() + ": No space left on device, kept");
}

TEST_F(AutostartEntryTest, WhatCannotBeWrittenWholeIsNotWrittenAtAll)
{
    const auto run = runForked([this] {
        (void)std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        (void)::getrlimit(RLIMIT_FSIZE, &limit);
        const auto unlimited = std::exchange(limit.rlim_cur, 0);
        (void)::setrlimit(RLIMIT_FSIZE, &limit);
        const auto description = descriptionOf(entry.add());
        limit.rlim_cur = unlimited;
        (void)::setrlimit(RLIMIT_FSIZE, &limit);
        (void)std::fputs(description.c_str(), stdout);
    });
    EXPECT_EQ(run.output, file.string() + ": File too large");
    EXPECT_THAT(namesIn(folder), ElementsAre());
    EXPECT_EQ(entry.status(), LoginItemStatus::notRegistered);
}

/// A name that a program may have and that means something in a desktop file.
struct OddName
{
    std::string kind;
    std::string name;
};

/// How a test is called in lists, which cannot hold the name itself.
void PrintTo(const OddName& name, std::ostream* stream)
{
    *stream << name.kind;
}

class AutostartEntryOfOddName : public testing::TestWithParam<OddName>
{
protected:
    AutostartEntryOfOddName()
    {
        writeFile(
            program,
            "#!/bin/sh\n"
            "printf '%s\\n' \"$#\" \"$0\" \"$@\" > \"$ORLIMO_TEST_OUTPUT.part\"\n"
            "mv \"$ORLIMO_TEST_OUTPUT.part\" \"$ORLIMO_TEST_OUTPUT\"\n");
        std::filesystem::permissions(program, everyone);
    }

    TemporaryFolder home;
    std::filesystem::path folder = home.path() / "autostart";
    std::filesystem::path file = folder / "app.orlimo.Orlimo.desktop";
    std::filesystem::path program = home.path() / "bin" / GetParam().name;
};

TEST_P(AutostartEntryOfOddName, IsValid)
{
    const AutostartEntry entry(folder, program);
    writeFile(file, "[Desktop Entry]\nHidden=true\nX-GNOME-Autostart-enabled=false\n");
    ASSERT_EQ(descriptionOf(entry.add()), "no error");
    ChildProcess validation("desktop-file-validate", {.arguments = {file.string()}});
    EXPECT_EQ(validation.awaitEnd().status, 0);
    EXPECT_EQ(validation.output() + validation.errors(), "") << contentOf(file);
}

/// Without a percent sign: the desktop library that the test starts programs with looks for a
/// program of the name in which it still stands twice.
class AutostartEntryOfStartableName : public AutostartEntryOfOddName
{};

TEST_P(AutostartEntryOfStartableName, StartsTheProgramAsADesktopDoes)
{
    const AutostartEntry entry(folder, program);
    ASSERT_EQ(descriptionOf(entry.add()), "no error");
    const auto output = home.path() / "output";
    ChildProcess launcher(
        "gio",
        {.arguments = {"launch", file.string()},
         .environment = {{"ORLIMO_TEST_OUTPUT", output.string()}}});
    ASSERT_EQ(launcher.awaitEnd().status, 0) << launcher.errors() << contentOf(file);
    ASSERT_TRUE(await([&output] { return std::filesystem::exists(output); })) << contentOf(file);
    EXPECT_EQ(contentOf(output), "1\n" + program.string() + "\n--launched-at-login\n");
}

INSTANTIATE_TEST_SUITE_P(
    Percent, AutostartEntryOfOddName, testing::Values(OddName{"percent", "%f %% %U %"}));

const auto oddNames = testing::Values(
    OddName{"ordinary", "orlimo"},
    OddName{"blank", "two words"},
    OddName{"blanksAround", " blanks around "},
    OddName{"quotes", "\"double\" 'single'"},
    OddName{"backticks", "`touch x` $(touch x)"},
    OddName{"dollars", "$HOME ${HOME} ~"},
    OddName{"backslashes", "back\\slash \\n \\\\ \\s \\"},
    OddName{"shellCharacters", "a;b&c|d<e>f*g?h#i(j)k"},
    OddName{"controlCharacters", "line\nbreak\ttab\rreturn"},
    OddName{"group", "[Desktop Entry]"},
    OddName{"otherScripts", "Größe 鍵 \xF0\x9F\x94\x91"},
    OddName{"equalsSign", "a=b"});
INSTANTIATE_TEST_SUITE_P(Names, AutostartEntryOfOddName, oddNames);
INSTANTIATE_TEST_SUITE_P(Names, AutostartEntryOfStartableName, oddNames);

} // namespace
} // namespace orlimo
