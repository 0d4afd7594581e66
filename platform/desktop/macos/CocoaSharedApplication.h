#pragma once

#include "platform/desktop/SharedApplication.h"
#include "platform/desktop/macos/AppKitServices.h"

namespace orlimo {

/// The system's application object, whose event loop Qt runs. Main thread.
class CocoaSharedApplication final : public SharedApplication
{
public:
    explicit CocoaSharedApplication(AppKitServices appKit);

    int run(ApplicationDelegate& delegate) override;
    void orderFrontStandardAboutPanel() override;
    void terminate() override;
    [[nodiscard]] bool isTerminating() const override { return terminating; }

private:
    int runInAppKit(ApplicationDelegate& delegate);
    int runInQt(ApplicationDelegate& delegate);
    /// From here on the event loop can be ended; it is, if that was requested before.
    void launchingDidFinish();
    void endEventLoop();

    AppKitServices services;
    bool isLaunched = false;
    bool terminating = false;
};

} // namespace orlimo
