#pragma once

namespace orlimo {

/// Lets the application's palette follow the user's preference for light or dark windows, from now
/// until the application object is destroyed, unless Qt does so itself. Returns at once; the
/// preference is applied when the system reports it. Main thread, after the application object.
void followColorScheme();

} // namespace orlimo
