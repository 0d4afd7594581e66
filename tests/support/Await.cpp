#include "tests/support/Await.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <thread>

namespace orlimo {

bool await(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    for (;;) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (condition()) {
            return true;
        }
        if (deadline.hasExpired()) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void runEventLoop(std::chrono::milliseconds span)
{
    (void)await([] { return false; }, span);
}

} // namespace orlimo
