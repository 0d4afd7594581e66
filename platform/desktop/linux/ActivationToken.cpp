#include "platform/desktop/linux/ActivationToken.h"

#include "platform/process/EnvironmentVariable.h"

#include <QtGlobal>

#include <string>

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
    const std::string token = environmentVariable(variable);
    const std::string startupId = environmentVariable(startupIdVariable);
    qunsetenv(variable);
    qunsetenv(startupIdVariable);
    return QByteArray::fromStdString(token.empty() ? startupId : token);
}

} // namespace orlimo
