#pragma once

namespace orlimo {

/// Has file permissions count for this process and the program that it becomes, also where it is
/// the superuser's, who is still the owner of what it owns. Called in a child process.
void enforceFilePermissions();

} // namespace orlimo
