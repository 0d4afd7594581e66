#pragma once

#include <QByteArray>

namespace orlimo {

/// The right to hand on the focus that came with a start or with a request, lent to the toolkit,
/// which looks for it in the environment when a window is to be activated; gone from there with the
/// object. Main thread.
class ActivationToken
{
public:
    /// Where a start finds its token, and where the toolkit does.
    static constexpr const char* variable = "XDG_ACTIVATION_TOKEN";
    /// The start's id, which desktops from before there were tokens give instead.
    static constexpr const char* startupIdVariable = "DESKTOP_STARTUP_ID";

    /// An empty `token` changes nothing.
    explicit ActivationToken(const QByteArray& token);
    ActivationToken(const ActivationToken&) = delete;
    ActivationToken& operator=(const ActivationToken&) = delete;
    ~ActivationToken();

    /// Takes out of the environment what this program's own start brought, so that nothing the
    /// program starts finds it there. Empty where there is nothing.
    static QByteArray takeFromEnvironment();

private:
    bool isExported;
};

} // namespace orlimo
