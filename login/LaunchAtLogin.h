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

    /// Has all of this work on `services` from now on, and what their service reports only after a
    /// call announced through observable(), a failure logged like any other. `main` calls it once,
    /// before everything else; without it every other call is a fatal stop.
    static void install(LoginServices services);

    /// Whether the program is registered and the user has not switched it off.
    [[nodiscard]] static bool isEnabled();

    /// Announces the change through observable(), then registers the program, afresh where it
    /// already is, or ends the registration. A failure is one entry in the log and nothing else.
    static void setEnabled(bool enabled);

    /// Whether the system's login item mechanism made this launch. False once launching has
    /// finished.
    [[nodiscard]] static bool wasLaunchedAtLogin();

    /// The one instance that views observe. Made at the first call, lives to the end of the
    /// process.
    [[nodiscard]] static Observable& observable();
};

} // namespace orlimo
