#include "tests/scripts/FakePrograms.h"

#include "tests/support/process/OutputCapture.h"

#include <QStandardPaths>
#include <gtest/gtest.h>

namespace orlimo {

namespace {

constexpr const char* callsFile = "calls";

void makeProgram(const std::filesystem::path& file, const std::string& text)
{
    writeFile(file, text);
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}

} // namespace

FakePrograms::FakePrograms()
    : systemPath(qEnvironmentVariable("PATH").toStdString())
{
    std::filesystem::create_directory(folder.path() / "bin");
    writeFile(folder.path() / callsFile, "");
}

void FakePrograms::add(const std::string& name, const std::string& body)
{
    makeProgram(
        folder.path() / "bin" / name,
        "#!/bin/sh\necho \"" + name + "${*:+ $*}\" >>\"" + (folder.path() / callsFile).string() +
            "\"\n" + body + "\n");
}

void FakePrograms::keepOnly(const std::vector<std::string>& programs)
{
    for (const std::string& name : programs) {
        const auto found = QStandardPaths::findExecutable(QString::fromStdString(name));
        ASSERT_FALSE(found.isEmpty()) << name;
        std::filesystem::create_symlink(found.toStdString(), folder.path() / "bin" / name);
    }
    systemPath.reset();
}

std::vector<std::string> FakePrograms::calls() const
{
    return linesOf(contentOf(folder.path() / callsFile));
}

ChildSettings FakePrograms::settings(
    const std::filesystem::path& script,
    const std::vector<std::string>& arguments,
    std::map<std::string, std::optional<std::string>> environment) const
{
    environment["PATH"] =
        (folder.path() / "bin").string() + (systemPath ? ":" + *systemPath : std::string());
    std::vector<std::string> words{std::filesystem::path(ORLIMO_SOURCES) / script};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return {.arguments = std::move(words), .environment = std::move(environment)};
}

CommandResult FakePrograms::run(
    const std::filesystem::path& script,
    const std::vector<std::string>& arguments,
    std::map<std::string, std::optional<std::string>> environment) const
{
    return CommandResult::of(
        "/bin/bash", settings(script, arguments, std::move(environment)), std::chrono::minutes(4));
}

} // namespace orlimo
