#pragma once

#include <filesystem>

namespace orlimo {

/// Takes the superuser's rights away from this process for good, so that file permissions count.
/// Does nothing for anyone else. Called in a child process.
void becomeUnprivilegedUser();

/// Makes `folder` that user's own. Does nothing where this process is not the superuser's.
void handToUnprivilegedUser(const std::filesystem::path& folder);

/// Whether users other than the superuser may enter the folder of `file`, that is start a program
/// there. They may not where the tree lies in somebody's closed home.
[[nodiscard]] bool canOthersReach(const std::filesystem::path& file);

} // namespace orlimo
