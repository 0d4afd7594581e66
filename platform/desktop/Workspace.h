#pragma once

#include <QUrl>

namespace orlimo {

/// Has the host open `url` with the program that the user prefers for it. Does not wait; false when
/// the host says at once that nothing opens it. Main thread.
bool openUrl(const QUrl& url);

} // namespace orlimo
