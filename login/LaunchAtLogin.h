#pragma once

#include "login/LoginServices.h"

namespace orlimo {

class TextLabel;

/// The program as a login item: whether the host starts it at each login. The host alone keeps the
/// registration; every call asks it anew. Main thread.
class LaunchAtLogin
{
public:
    class Observable;
    template <typename Label = TextLabel> class Toggle;

    LaunchAtLogin() = delete;

    /// Whether the program is registered and the user has not switched it off.
    [[nodiscard]] static bool isEnabled(const LoginServices& services = LoginServices::native());

    /// Announces the change through observable(), then registers the program, afresh where it
    /// already is, or ends the registration. A failure is one entry in the log and nothing else.
    static void setEnabled(bool enabled, const LoginServices& services = LoginServices::native());

    /// From now on, what the host of `host` answers only after the call is announced through
    /// observable() too, and a failure that it tells of then is an entry in the log like any other.
    /// Called once, before the first change.
    static void observeResponses(const LoginServices& services = LoginServices::native());

    /// Whether the host's login item mechanism made this launch. False once launching has
    /// finished.
    [[nodiscard]] static bool
    wasLaunchedAtLogin(const LoginServices& services = LoginServices::native());

    /// The one instance that views observe. Made at the first call, lives to the end of the
    /// process.
    [[nodiscard]] static Observable& observable();
};

} // namespace orlimo
