#pragma once

#include "login/LoginServices.h"

namespace orlimo {

class TextLabel;

/// The program as a login item: whether the system starts it at each login. The system alone stores
/// the registration; every call queries it. Main thread.
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

    /// Also announces results that the service reports after the call, through observable(), and
    /// logs their failures. Called once, before the first change.
    static void observeResponses(const LoginServices& services = LoginServices::native());

    /// Whether the system's login item mechanism made this launch. False once launching has
    /// finished.
    [[nodiscard]] static bool
    wasLaunchedAtLogin(const LoginServices& services = LoginServices::native());

    /// The one instance that views observe. Made at the first call, lives to the end of the
    /// process.
    [[nodiscard]] static Observable& observable();
};

} // namespace orlimo
