#pragma once

#include <QByteArray>

namespace orlimo {

/// A request of another program to the running instance.
struct ApplicationRequest
{
    enum class Kind {
        open,
        quit,
    };

    Kind kind = Kind::open;
    /// The caller's permission to take the focus, as its desktop issued it; empty without one.
    QByteArray activationToken;
};

} // namespace orlimo
