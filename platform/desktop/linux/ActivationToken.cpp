#include "platform/desktop/linux/ActivationToken.h"

#include <QtGlobal>

namespace orlimo {

ActivationToken::ActivationToken(const QByteArray& token)
    : isExported(!token.isEmpty())
{
    if (isExported) {
        qputenv(variable, token);
    }
}

ActivationToken::~ActivationToken()
{
    if (isExported) {
        qunsetenv(variable);
    }
}

QByteArray ActivationToken::takeFromEnvironment()
{
    const QByteArray token = qgetenv(variable);
    const QByteArray startupId = qgetenv(startupIdVariable);
    qunsetenv(variable);
    qunsetenv(startupIdVariable);
    return token.isEmpty() ? startupId : token;
}

} // namespace orlimo
