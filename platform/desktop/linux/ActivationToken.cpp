#include "platform/desktop/linux/ActivationToken.h"

#include <QtGlobal>

namespace orlimo {

ActivationToken::ActivationToken(const QByteArray& token)
    : isLent(!token.isEmpty())
{
    if (isLent) {
        qputenv(variable, token);
    }
}

ActivationToken::~ActivationToken()
{
    if (isLent) {
        qunsetenv(variable);
    }
}

QByteArray ActivationToken::takeFromStart()
{
    const QByteArray token = qgetenv(variable);
    const QByteArray startId = qgetenv(startVariable);
    qunsetenv(variable);
    qunsetenv(startVariable);
    return token.isEmpty() ? startId : token;
}

} // namespace orlimo
