#pragma once

#include <QByteArray>

namespace orlimo {

/// What another program asks of the running one.
struct ApplicationRequest
{
    enum class Kind {
        open,
        quit,
    };

    Kind kind = Kind::open;
    /// The asking program's right to hand on the focus, as its desktop gave it; empty without one.
    QByteArray activationToken;
};

} // namespace orlimo
