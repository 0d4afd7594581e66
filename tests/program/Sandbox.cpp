#include "tests/program/Sandbox.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

namespace orlimo {

std::vector<std::string> sandboxLauncher(const std::filesystem::path& folder)
{
    const auto mark = folder / "flatpak-info";
    writeFile(mark, "[Application]\nname=app.orlimo.Orlimo\n");
    std::vector<std::string> command{"/usr/bin/bwrap", "--die-with-parent"};
    for (const auto& entry : std::filesystem::directory_iterator("/")) {
        const std::string path = entry.path().string();
        if (entry.is_symlink()) {
            const std::string target = std::filesystem::read_symlink(entry.path()).string();
            command.insert(command.end(), {"--symlink", target, path});
        } else {
            command.insert(command.end(), {"--dev-bind", path, path});
        }
    }
    command.insert(command.end(), {"--ro-bind", mark.string(), "/.flatpak-info", "--"});
    return command;
}

bool canSandbox(const std::vector<std::string>& launcher)
{
    std::vector<std::string> arguments(launcher.begin() + 1, launcher.end());
    arguments.emplace_back("/usr/bin/true");
    return ChildProcess(launcher.front(), {.arguments = arguments}).awaitEnd().status == 0;
}

} // namespace orlimo
