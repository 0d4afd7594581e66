#include "platform/desktop/SharedApplication.h"
#include "platform/desktop/linux/ActivationToken.h"
#include "platform/display/linux/X11Connection.h"
#include "platform/menubar/MenuBarExtra.h"
#include "platform/menubar/MenuBarWindow.h"
#include "platform/menubar/linux/SystemTray.h"
#include "platform/menubar/linux/TrayIcon.h"
#include "platform/menubar/linux/WaylandFocus.h"
#include "platform/menubar/linux/X11Focus.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QTimer>

#include <chrono>
#include <optional>
#include <utility>

namespace orlimo {

namespace {

/// How long to wait for a reply about the system tray before assuming that there is none. The user
/// who has started the program waits that long without seeing anything.
constexpr std::chrono::seconds trayQueryTimeout{1};

/// Whether windows are visible to a user.
bool isOnScreen()
{
    const QString platform = QGuiApplication::platformName();
    return platform != u"offscreen" && platform != u"minimal";
}

/// An icon in the tray and its window.
class TrayMenuBarExtra final : public MenuBarExtra
{
public:
    TrayMenuBarExtra(ContentBuilder builder, QIcon image, UptimeClock uptimeClock)
        : makeContent(std::move(builder))
        , label(std::move(image))
        , clock(std::move(uptimeClock))
        , tray([this] { trayAvailabilityDidChange(); })
    {
        trayQueryTimer.setSingleShot(true);
        trayQueryTimer.setInterval(trayQueryTimeout);
        QObject::connect(
            &trayQueryTimer, &QTimer::timeout, &trayQueryTimer, [this] { openOnLaunch(); });
        showIcon();
    }

    void open() override { window().open(); }

    void openOnRequest() override { window().openOnRequest(); }

    void openIfNoTray() override
    {
        if (!isOnScreen()) {
            return;
        }
        const auto isTrayAvailable = tray.isTrayAvailable();
        if (!isTrayAvailable) {
            // By the time of the reply it will have been removed from the environment.
            launchToken = ActivationToken::takeFromEnvironment();
            trayQueryTimer.start();
        } else if (!*isTrayAvailable) {
            openOnLaunch();
        }
    }

    void close() override
    {
        if (menuBarWindow) {
            menuBarWindow->close();
        }
    }

    [[nodiscard]] bool isOpen() const override { return menuBarWindow && menuBarWindow->isOpen(); }

private:
    void openOnLaunch()
    {
        const ActivationToken activationToken(std::exchange(launchToken, {}));
        openOnRequest();
    }

    void trayAvailabilityDidChange()
    {
        showIcon();
        if (trayQueryTimer.isActive() && tray.isTrayAvailable()) {
            trayQueryTimer.stop();
            openIfNoTray();
        }
    }

    void showIcon()
    {
        if (!icon && tray.isTrayAvailable().value_or(false)) {
            icon.emplace(
                label,
                TrayIcon::Handlers{
                    .toggle = [this] { window().toggle(); },
                    .open = [this] { open(); },
                    .quit = [] { sharedApplication().terminate(); }},
                clock);
            tray.iconWasCreated();
        }
        if (icon) {
            icon->setTextColor(tray.textColor());
        }
    }

    MenuBarWindow& window()
    {
        if (!menuBarWindow) {
            content = makeContent();
            if (x11Connection() != nullptr) {
                x11Focus.emplace(
                    *content,
                    [this](const QPoint& position) { menuBarWindow->pointerWasPressed(position); },
                    clock);
            }
            menuBarWindow.emplace(
                *content,
                [this] { return icon ? icon->geometry() : std::nullopt; },
                clock,
                MenuBarWindow::Options{.focusLoss = [this] { return focusLoss(); }});
        }
        return *menuBarWindow;
    }

    [[nodiscard]] FocusLoss focusLoss() const
    {
        if (x11Focus) {
            return x11Focus->lastLoss();
        }
        const bool isOnWayland = QGuiApplication::platformName().startsWith(u"wayland");
        return isOnWayland ? focusLossOnWayland() : FocusLoss::deliberate;
    }

    ContentBuilder makeContent;
    QIcon label;
    UptimeClock clock;
    std::unique_ptr<QWidget> content;
    std::optional<X11Focus> x11Focus;
    std::optional<MenuBarWindow> menuBarWindow;
    std::optional<TrayIcon> icon;
    QTimer trayQueryTimer;
    QByteArray launchToken;
    SystemTray tray;
};

} // namespace

std::unique_ptr<MenuBarExtra>
MenuBarExtra::create(ContentBuilder makeContent, const QIcon& label, UptimeClock clock)
{
    return std::make_unique<TrayMenuBarExtra>(std::move(makeContent), label, std::move(clock));
}

} // namespace orlimo
