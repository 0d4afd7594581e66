#include "platform/loginitem/linux/RunningProgram.h"

#include <string_view>
#include <system_error>

namespace orlimo {

std::filesystem::path runningProgram(const std::filesystem::path& link)
{
    constexpr std::string_view deletedSuffix = " (deleted)";
    std::error_code unknown;
    auto target = std::filesystem::read_symlink(link, unknown);
    const std::string_view name = target.native();
    // The link leads to the program even where its text does not, which distinguishes a file that
    // really has such a name from a deleted one.
    if (!name.ends_with(deletedSuffix) || std::filesystem::equivalent(link, target, unknown)) {
        return target;
    }
    return name.substr(0, name.size() - deletedSuffix.size());
}

} // namespace orlimo
