#pragma once

#include "tests/scripts/FakePrograms.h"

#include <regex>

namespace orlimo {

/// Fakes of the tools of macOS that packaging/macos calls. They fail where the call contains
/// ORLIMO_FAILING_CALL.
class MacTools : public FakePrograms
{
public:
    MacTools()
    {
        const std::string failing =
            "case \"${0##*/} $*\" in *\"${ORLIMO_FAILING_CALL:-no such call}\"*)\n"
            "echo \"${0##*/}: refused\" >&2; exit 1 ;; esac\n";
        add("uname", "echo Darwin");
        for (const char* name : {"defaults", "plutil", "spctl", "xattr", "xcrun"}) {
            add(name, failing);
        }
        // What is signed looks different afterwards.
        add("codesign", failing + R"(for last; do :; done
            case "$*" in
            *"--sign "*) [ ! -d "$last" ] || last=$last/signature; echo signed >>"$last" ;;
            esac)");
        // The content of an image is the folder beside it.
        add("hdiutil", failing + R"(for last; do
                [ "$previous" != -mountpoint ] || mount=$last
                previous=$last
            done
            case "$1" in
            attach) cp -R "$last.volume/." "$mount/" ;;
            detach) find "$last" -mindepth 1 -delete ;;
            esac)");
    }

    /// Runs `script`, one of packaging/macos, with no settings for signing but those in `changes`.
    [[nodiscard]] CommandResult
    run(const std::string& script,
        const std::vector<std::string>& arguments,
        std::map<std::string, std::optional<std::string>> changes = {}) const
    {
        changes.insert(
            {{"CMAKE_PREFIX_PATH", std::nullopt},
             {"ORLIMO_HOMEBREW_PREFIX", std::nullopt},
             {"ORLIMO_NOTARY_PROFILE", std::nullopt},
             {"ORLIMO_SIGNING_IDENTITY", std::nullopt}});
        return FakePrograms::run("packaging/macos/" + script, arguments, std::move(changes));
    }

    /// The calls so far. Where a copy is signed has another name each time.
    [[nodiscard]] std::vector<std::string> toolCalls() const
    {
        auto made = calls();
        std::erase(made, "uname -s");
        static const std::regex scratch("[^ ]*/[.]signing[.][A-Za-z0-9]+/");
        for (std::string& call : made) {
            call = std::regex_replace(call, scratch, "(copy)/");
        }
        return made;
    }
};

} // namespace orlimo
