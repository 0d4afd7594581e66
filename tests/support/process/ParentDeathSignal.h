#pragma once

namespace orlimo {

/// Has this process, and the program that it becomes, killed when the process that started it ends,
/// however it ends: a test that is killed leaves nothing behind. Called in a child process.
void dieWithParent();

} // namespace orlimo
