#pragma once

#include <QByteArray>

namespace orlimo {

/// The permission to take the focus that came with a start or a request. While the object exists,
/// the token is in the environment, where Qt looks for it when it activates a window. Main thread.
class ActivationToken
{
public:
    /// The variable in which a start passes its token, and where Qt looks for it.
    static constexpr const char* variable = "XDG_ACTIVATION_TOKEN";
    /// The startup id that older desktops pass instead.
    static constexpr const char* startupIdVariable = "DESKTOP_STARTUP_ID";

    /// An empty `token` changes nothing.
    explicit ActivationToken(const QByteArray& token);
    ActivationToken(const ActivationToken&) = delete;
    ActivationToken& operator=(const ActivationToken&) = delete;
    ~ActivationToken();

    /// Removes the token of this program's own start from the environment, so that no child process
    /// inherits it. Empty if there is none.
    static QByteArray takeFromEnvironment();

private:
    bool isExported;
};

} // namespace orlimo
