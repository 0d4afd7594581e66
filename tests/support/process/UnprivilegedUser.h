#pragma once

#include <filesystem>

namespace orlimo {

/// Takes the superuser's rights away from this process for good, so that file permissions count.
/// Does nothing for anyone else. Called in a child process.
void becomeUnprivilegedUser();

/// Makes `folder` that user's own. Does nothing where this process is not the superuser's.
void handToUnprivilegedUser(const std::filesystem::path& folder);

} // namespace orlimo
