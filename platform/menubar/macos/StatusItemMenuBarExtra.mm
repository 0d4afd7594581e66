#include "platform/menubar/macos/StatusItemMenuBarExtra.h"

#include <QEvent>
#include <QTimer>

#include <utility>

namespace orlimo {

namespace {

/// Not a tool window, which the system hides when the program becomes inactive while Qt still
/// considers it visible.
constexpr Qt::WindowFlags windowFlags =
    Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;

/// Makes the window open in the user's current space, also over a program in full screen, instead
/// of switching to the window's space.
void moveToActiveSpace(NSWindow* window)
{
    NSWindowCollectionBehavior behavior = NSWindowCollectionBehaviorMoveToActiveSpace;
    behavior |= NSWindowCollectionBehaviorFullScreenAuxiliary;
    [window setHidesOnDeactivate:NO];
    [window setCollectionBehavior:behavior];
}

} // namespace

/// Calls a function after the window has been shown, hidden or given the focus and the system has
/// finished handling that.
class StatusItemMenuBarExtra::WindowObserver final : public QObject
{
public:
    WindowObserver(QWidget& window, std::function<void()> changeHandler)
    {
        notifyTimer.setSingleShot(true);
        notifyTimer.setInterval(0);
        connect(&notifyTimer, &QTimer::timeout, this, std::move(changeHandler));
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show || event->type() == QEvent::Hide ||
            event->type() == QEvent::WindowActivate)
        {
            notifyTimer.start();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QTimer notifyTimer;
};

StatusItemMenuBarExtra::StatusItemMenuBarExtra(
    ContentBuilder builder, const QIcon& label, UptimeClock uptimeClock, AppKitServices appKit)
    : makeContent(std::move(builder))
    , clock(std::move(uptimeClock))
    , services(std::move(appKit))
    , highlighting([this] { item->highlight(isOpen()); })
{
    if (services.isAvailable) {
        item.emplace(label, [this] { window().toggle(); });
    }
}

StatusItemMenuBarExtra::~StatusItemMenuBarExtra() = default;

void StatusItemMenuBarExtra::open()
{
    window().open();
}

void StatusItemMenuBarExtra::openOnRequest()
{
    window().openOnRequest();
}

void StatusItemMenuBarExtra::openIfNoTray()
{
    if (item && !item->isVisible()) {
        openOnRequest();
    }
}

void StatusItemMenuBarExtra::close()
{
    if (menuBarWindow) {
        menuBarWindow->close();
    }
}

bool StatusItemMenuBarExtra::isOpen() const
{
    return menuBarWindow && menuBarWindow->isOpen();
}

MenuBarWindow& StatusItemMenuBarExtra::window()
{
    if (!menuBarWindow) {
        content = makeContent();
        observer = std::make_unique<WindowObserver>(*content, [this] { visibilityDidChange(); });
        menuBarWindow.emplace(
            *content,
            [this] { return item ? item->geometry() : std::nullopt; },
            clock,
            MenuBarWindow::Options{.flags = windowFlags, .willComeToFront = [this](QWidget& shown) {
                                       willComeToFront(shown);
                                   }});
    }
    return *menuBarWindow;
}

void StatusItemMenuBarExtra::willComeToFront(const QWidget& shown)
{
    if (!services.isAvailable) {
        return;
    }
    @autoreleasepool {
        moveToActiveSpace([services.viewOf(shown) window]);
    }
    activateApplication();
}

void StatusItemMenuBarExtra::visibilityDidChange()
{
    if (!item) {
        return;
    }
    // A pressed button runs its own event loop until it is released, and then removes its
    // highlight.
    highlighting.schedule();
    if (!isOpen()) {
        yieldFocus();
    }
}

std::unique_ptr<MenuBarExtra>
MenuBarExtra::create(ContentBuilder makeContent, const QIcon& label, UptimeClock clock)
{
    return std::make_unique<StatusItemMenuBarExtra>(
        std::move(makeContent), label, std::move(clock), AppKitServices::detect());
}

} // namespace orlimo
