#pragma once

namespace orlimo {

class ApplicationDelegate;

/// The running application as the system sees it. Main thread.
class SharedApplication
{
public:
    SharedApplication() = default;
    SharedApplication(const SharedApplication&) = delete;
    SharedApplication& operator=(const SharedApplication&) = delete;
    virtual ~SharedApplication() = default;

    /// Runs the event loop until the program ends and returns its exit status. `delegate` is
    /// notified of each lifecycle event and must outlive the call.
    virtual int run(ApplicationDelegate& delegate) = 0;

    /// Shows the system's standard About panel in front of everything, the same one each time.
    virtual void orderFrontStandardAboutPanel() = 0;

    /// Ends the program with exit status 0, without asking the user.
    virtual void terminate() = 0;
    /// Whether `terminate` has been called and the program has not ended yet.
    [[nodiscard]] virtual bool isTerminating() const = 0;
};

/// The only instance. Calling this before Qt's application object exists is a fatal stop.
[[nodiscard]] SharedApplication& sharedApplication();

} // namespace orlimo
