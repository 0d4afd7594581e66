#include "platform/desktop/Workspace.h"

#include <QDesktopServices>

namespace orlimo {

bool openUrl(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

} // namespace orlimo
