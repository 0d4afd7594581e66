#pragma once

namespace orlimo {

/// Gives this process an empty home of its own inside the sandboxed one that it shares with its
/// parent. Call it in a child, before anything of the home is used.
void switchToPrivateHome();

} // namespace orlimo
