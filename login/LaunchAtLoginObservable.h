#pragma once

#include "login/LaunchAtLogin.h"

#include <QObject>

namespace orlimo {

/// What a view observes and binds to: the registration as a property that announces its changes.
/// Keeps no value of its own. There is one, LaunchAtLogin::observable(). Main thread.
class LaunchAtLogin::Observable : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Observable)

public:
    ~Observable() override = default;

    [[nodiscard]] bool isEnabled() const;
    void setEnabled(bool enabled);

Q_SIGNALS:
    /// The registration is about to change: the new state can be read when control is back in the
    /// event loop. Also sent when the state stays the same.
    void objectWillChange();

private:
    friend class LaunchAtLogin;
    Observable() = default;
};

} // namespace orlimo
