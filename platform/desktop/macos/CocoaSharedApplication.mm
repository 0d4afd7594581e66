#include "platform/desktop/macos/CocoaSharedApplication.h"

#include "platform/desktop/QtLifecycle.h"
#include "platform/desktop/macos/AppKitLifecycle.h"
#include "platform/process/FatalStop.h"
#include "platform/process/macos/StringConversion.h"

#include <QApplication>

#include <utility>

namespace orlimo {

namespace {

NSDictionary<NSString*, id>* toDictionary(const AboutPanelOptions& options)
{
    NSMutableDictionary<NSString*, id>* const dictionary = [NSMutableDictionary dictionary];
    for (const auto& [key, value] : options) {
        [dictionary setObject:toNSString(value) forKey:toNSString(key)];
    }
    return dictionary;
}

} // namespace

CocoaSharedApplication::CocoaSharedApplication(AppKitServices appKit)
    : services(std::move(appKit))
{}

int CocoaSharedApplication::run(ApplicationDelegate& delegate)
{
    // A program that lives in the menu bar stays when its windows, or the toolkit's own jobs, come
    // to an end.
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

void CocoaSharedApplication::orderFrontStandardAboutPanel(const AboutPanelOptions& options)
{
    if (!services.isAvailable) {
        return;
    }
    @autoreleasepool {
        activateApplication();
        [NSApp orderFrontStandardAboutPanelWithOptions:toDictionary(options)];
    }
}

void CocoaSharedApplication::terminate()
{
    terminating = true;
    // Before, the system would end the process at once instead of the event loop.
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
            // The toolkit, the system's delegate, closes the windows and leaves the event loop; it
            // has the system not end the process itself.
            [NSApp terminate:nil];
        }
    }
    // Also when a window has refused to be closed.
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
