#pragma once

#include "platform/desktop/ActivationObserver.h"
#include "platform/desktop/ApplicationActivity.h"

#include <QTimer>

#include <functional>

namespace orlimo {

class ApplicationDelegate;

/// Tells a delegate of the turns of the application's life as the toolkit sees them, for a host
/// that does not tell of them itself. Main thread.
class QtLifecycle final
{
public:
    /// `delegate` must outlive the turns. `launchingDidFinish` is called after the delegate's turn
    /// of that name and before any activation is told; when it says false, none is.
    QtLifecycle(ApplicationDelegate& delegate, std::function<bool()> launchingDidFinish);
    QtLifecycle(const QtLifecycle&) = delete;
    QtLifecycle& operator=(const QtLifecycle&) = delete;
    ~QtLifecycle() = default;

    /// Tells of what comes before the event loop. The rest follows in it.
    void begin();

private:
    ApplicationDelegate& applicationDelegate;
    ActivationObserver activations;
    ApplicationActivity activity;
    QTimer launchTimer;
};

} // namespace orlimo
