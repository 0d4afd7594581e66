// The toolkit as it is on its own platform for the system: its event loop drains the main dispatch
// queue.

#include "platform/macos/MainDispatchQueue.h"
#include "tests/platform/macos/standins/WorkingDispatch.h"

#include <QCoreApplication>
#include <QSocketNotifier>

namespace orlimo {

namespace {

void drainFromNowOn()
{
    auto* const notifier = new QSocketNotifier(
        mainDispatchQueueHandle(), QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, [] { drainMainDispatchQueue(); });
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(drainFromNowOn)

bool isMainDispatchQueueDrained()
{
    return true;
}

} // namespace orlimo
