#pragma once

#include <map>
#include <string>

namespace orlimo {

class ApplicationDelegate;

/// What to show in the About panel instead of the program's own, by the option's name.
using AboutPanelOptions = std::map<std::string, std::string>;

/// The running application as its host knows it. Main thread.
class SharedApplication
{
public:
    SharedApplication() = default;
    SharedApplication(const SharedApplication&) = delete;
    SharedApplication& operator=(const SharedApplication&) = delete;
    virtual ~SharedApplication() = default;

    /// Runs the event loop to the end of the program and returns its exit status. `delegate` is
    /// told of each turn and must outlive the call.
    virtual int run(ApplicationDelegate& delegate) = 0;

    /// Shows the host's standard About panel in front of everything, the same one each time.
    virtual void orderFrontStandardAboutPanel(const AboutPanelOptions& options) = 0;

    /// Ends the program with exit status 0, unasked.
    virtual void terminate() = 0;
    /// Whether the program has been told to end and only has not come to it yet.
    [[nodiscard]] virtual bool isTerminating() const = 0;
};

/// The one there is. Before the toolkit's application object exists a call is a fatal stop.
[[nodiscard]] SharedApplication& sharedApplication();

} // namespace orlimo
