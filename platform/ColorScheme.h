#pragma once

namespace orlimo {

/// Has the application's palette follow the user's preference for light or dark windows, from now
/// until the application object ends, where the toolkit does not do that by itself. Returns at
/// once: a preference that the host tells later is followed when it comes. Main thread, after the
/// application object.
void followColorScheme();

} // namespace orlimo
