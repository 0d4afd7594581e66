#include "platform/desktop/QtLifecycle.h"
#include "platform/desktop/SharedApplication.h"
#include "platform/desktop/linux/AboutPanel.h"
#include "platform/desktop/linux/ActivationToken.h"
#include "platform/process/FatalStop.h"

#include <QApplication>
#include <QPointer>
#include <QSessionManager>

namespace orlimo {

namespace {

/// Qt's application object in the role of the system's.
class QtSharedApplication final : public SharedApplication
{
public:
    int run(ApplicationDelegate& delegate) override
    {
        // A program that lives in the menu bar keeps running when its last window closes or Qt's
        // own jobs end.
        QApplication::setQuitOnLastWindowClosed(false);
        QApplication::setQuitLockEnabled(false);

        const QObject runContext;
        disableSessionRestore(runContext);

        QtLifecycle lifecycle(delegate, [this] {
            ActivationToken::takeFromEnvironment();
            if (terminating) {
                QApplication::exit(0);
            }
            return !terminating;
        });
        lifecycle.begin();
        const int status = QApplication::exec();
        delete aboutPanel;
        terminating = false;
        return status;
    }

    void orderFrontStandardAboutPanel() override
    {
        if (aboutPanel.isNull()) {
            aboutPanel = new AboutPanel;
        }
        aboutPanel->showInFront();
    }

    void terminate() override
    {
        // Remembered for an event loop that does not run yet. Unlike quit(), exit() asks no window.
        terminating = true;
        QApplication::exit(0);
    }

    [[nodiscard]] bool isTerminating() const override { return terminating; }

private:
    /// A saved session would start the program at the next login, beside the login item. Lasts as
    /// long as `context`.
    static void disableSessionRestore(const QObject& context)
    {
        const auto neverRestart = [](QSessionManager& manager) {
            manager.setRestartHint(QSessionManager::RestartNever);
        };
        QObject::connect(qApp, &QGuiApplication::commitDataRequest, &context, neverRestart);
        QObject::connect(qApp, &QGuiApplication::saveStateRequest, &context, neverRestart);
    }

    QPointer<AboutPanel> aboutPanel;
    bool terminating = false;
};

} // namespace

SharedApplication& sharedApplication()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        fatalStop("there is no application object");
    }
    static QtSharedApplication application;
    return application;
}

} // namespace orlimo
