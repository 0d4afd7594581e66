#include "tests/packaging/macos/MacTools.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <regex>

namespace orlimo {

/// Scripts of many small steps take their time on a busy machine.
static constexpr std::chrono::minutes scriptTimeout{4};

std::map<std::string, std::optional<std::string>> MacTools::environment() const
{
    return {
        {"PATH", ORLIMO_MACOS_TESTS "/fakes:" + std::string(std::getenv("PATH"))},
        {"ORLIMO_AR", ORLIMO_LLVM_AR},
        {"ORLIMO_CALLS", calls.string()},
        {"CCACHE_DISABLE", "1"},
        {"CMAKE_PREFIX_PATH", std::nullopt},
        {"ORLIMO_CLANG", ORLIMO_CLANG},
        {"ORLIMO_CPACK", ORLIMO_CPACK},
        {"ORLIMO_HOMEBREW_PREFIX", std::nullopt},
        {"ORLIMO_INSTALL_NAME_TOOL", ORLIMO_LLVM_INSTALL_NAME_TOOL},
        {"ORLIMO_LD64", ORLIMO_LD64},
        {"ORLIMO_LIBRARY_ARCHITECTURE", ORLIMO_LIBRARY_ARCHITECTURE},
        {"ORLIMO_LIPO", ORLIMO_LLVM_LIPO},
        {"ORLIMO_NOTARY_PROFILE", std::nullopt},
        {"ORLIMO_OTOOL", ORLIMO_LLVM_OTOOL},
        {"ORLIMO_RANLIB", ORLIMO_LLVM_RANLIB},
        {"ORLIMO_SIGNING_IDENTITY", std::nullopt},
    };
}

CommandResult MacTools::run(
    const std::string& script,
    std::vector<std::string> arguments,
    const std::map<std::string, std::optional<std::string>>& changes) const
{
    auto variables = environment();
    for (const auto& [name, value] : changes) {
        variables[name] = value;
    }
    return CommandResult::of(
        ORLIMO_SOURCES "/packaging/macos/" + script,
        {.arguments = std::move(arguments), .environment = variables},
        scriptTimeout);
}

std::vector<std::string> MacTools::recordedCalls() const
{
    if (!std::filesystem::exists(calls)) {
        return {};
    }
    // Where a copy is signed is called differently each time.
    static const std::regex scratch("[^ ]*/[.]signing[.][A-Za-z0-9]+/");
    return linesOf(std::regex_replace(contentOf(calls), scratch, "(copy)/"));
}

void MacTools::makeHomebrew(const std::filesystem::path& folder) const
{
    const auto making = CommandResult::of(
        ORLIMO_MACOS_TESTS "/make-homebrew",
        {.arguments = {folder.string()}, .environment = environment()},
        scriptTimeout);
    ASSERT_EQ(making.status, 0) << making.text();
}

void MacTools::makeLibrary(
    const std::filesystem::path& file,
    const std::string& architecture,
    const std::string& system) const
{
    const auto making = CommandResult::of(
        "/bin/sh",
        {.arguments = {
             "-ceu",
             "echo 'int nothing(void) { return 0; }' | " ORLIMO_CLANG
             " -target \"$1-apple-macos$2\" -x c -c -o \"$0.o\" -\n" ORLIMO_LD64
             " -arch \"$1\" -platform_version macos \"$2\" \"$2\" -dylib -o \"$0\" \"$0.o\"\n"
             "rm \"$0.o\"",
             file.string(),
             architecture,
             system}});
    ASSERT_EQ(making.status, 0) << making.text();
}

} // namespace orlimo
