#pragma once

namespace orlimo {

/// Takes the superuser's rights away from this process for good, so that file permissions count.
/// Does nothing for anyone else. Called in a child process.
void becomeUnprivilegedUser();

} // namespace orlimo
