#include "controls/accessibility/AccessibleWindow.h"

#include "controls/ScrollingView.h"
#include "platform/ApplicationIdentity.h"
#include "platform/process/ToQString.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace orlimo {

namespace {

class AccessibleWindow final : public QAccessibleWidget
{
public:
    explicit AccessibleWindow(QWidget& window)
        : QAccessibleWidget(&window, QAccessible::Window)
    {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        const QString own = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && own.isEmpty() ? toQString(identity::applicationName)
                                                          : own;
    }
};

/// Asked before Qt's own factory, once for each class of the window, the derived one first. Menus,
/// dialogs and other windows with classes of their own are left to Qt.
QAccessibleInterface* makeAccessibleWindow(const QString& className, QObject* object)
{
    auto* window = qobject_cast<QWidget*>(object);
    const bool isPlain = className == QLatin1String("QWidget") ||
                         className == QLatin1String(ScrollingView::staticMetaObject.className());
    return isPlain && window != nullptr && window->isWindow() ? new AccessibleWindow(*window)
                                                              : nullptr;
}

} // namespace

void installAccessibleWindowFactory()
{
    QAccessible::installFactory(makeAccessibleWindow);
}

} // namespace orlimo
