#pragma once

namespace orlimo {

/// Switches this process to an empty home inside the sandboxed one of its parent. Call it in a
/// child process, before anything in the home is used.
void switchToPrivateHome();

} // namespace orlimo
