#pragma once

#include "platform/desktop/ActivationObserver.h"
#include "platform/desktop/ApplicationActivity.h"

#include <QTimer>

#include <functional>

namespace orlimo {

class ApplicationDelegate;

/// Notifies a delegate of the application's lifecycle events as Qt sees them, for a system that has
/// no such notifications. Main thread.
class QtLifecycle final
{
public:
    /// `delegate` must outlive this object. `launchingDidFinish` is called after the delegate's
    /// method of that name and before any activation is reported; if it returns false, none is.
    QtLifecycle(ApplicationDelegate& delegate, std::function<bool()> launchingDidFinish);
    QtLifecycle(const QtLifecycle&) = delete;
    QtLifecycle& operator=(const QtLifecycle&) = delete;
    ~QtLifecycle() = default;

    /// Notifies the delegate of what precedes the event loop. The rest follows in the loop.
    void begin();

private:
    ApplicationDelegate& applicationDelegate;
    ActivationObserver activations;
    ApplicationActivity activity;
    QTimer launchTimer;
};

} // namespace orlimo
