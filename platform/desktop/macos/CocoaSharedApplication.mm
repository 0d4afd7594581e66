#include "platform/desktop/macos/CocoaSharedApplication.h"

#include "platform/desktop/QtLifecycle.h"
#include "platform/desktop/macos/AppKitLifecycle.h"
#include "platform/process/FatalStop.h"

#include <QApplication>

#include <utility>

namespace orlimo {

CocoaSharedApplication::CocoaSharedApplication(AppKitServices appKit)
    : services(std::move(appKit))
{}

int CocoaSharedApplication::run(ApplicationDelegate& delegate)
{
    // A program that lives in the menu bar keeps running when its last window closes or Qt's own
    // jobs end.
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setQuitLockEnabled(false);

    const int status = services.isAvailable ? runInAppKit(delegate) : runInQt(delegate);
    isLaunched = false;
    terminating = false;
    return status;
}

int CocoaSharedApplication::runInAppKit(ApplicationDelegate& delegate)
{
    @autoreleasepool {
        const AppKitLifecycle lifecycle(delegate, [this] { launchingDidFinish(); });
        return QApplication::exec();
    }
}

int CocoaSharedApplication::runInQt(ApplicationDelegate& delegate)
{
    QtLifecycle lifecycle(delegate, [this] {
        launchingDidFinish();
        return !terminating;
    });
    lifecycle.begin();
    return QApplication::exec();
}

void CocoaSharedApplication::orderFrontStandardAboutPanel()
{
    if (!services.isAvailable) {
        return;
    }
    @autoreleasepool {
        activateApplication();
        [NSApp orderFrontStandardAboutPanelWithOptions:@{}];
    }
}

void CocoaSharedApplication::terminate()
{
    terminating = true;
    // Earlier the system would end the process at once instead of the event loop.
    if (isLaunched) {
        endEventLoop();
    }
}

void CocoaSharedApplication::launchingDidFinish()
{
    isLaunched = true;
    if (terminating) {
        endEventLoop();
    }
}

void CocoaSharedApplication::endEventLoop()
{
    if (services.isAvailable) {
        @autoreleasepool {
            // Qt, the system's application delegate, closes the windows and leaves the event loop;
            // it keeps the system from ending the process itself.
            [NSApp terminate:nil];
        }
    }
    // Needed if a window has refused to close.
    QApplication::exit(0);
}

SharedApplication& sharedApplication()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        fatalStop("there is no application object");
    }
    static CocoaSharedApplication application(AppKitServices::detect());
    return application;
}

} // namespace orlimo
