#include "platform/desktop/FrontWindow.h"

#include <QWidget>

namespace orlimo {

void orderFrontRegardless(QWidget& window)
{
    window.raise();
}

} // namespace orlimo
