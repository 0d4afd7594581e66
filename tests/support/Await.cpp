#include "tests/support/Await.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <thread>

namespace orlimo {

namespace {

bool awaitPollingEvery(
    std::chrono::milliseconds interval,
    const std::function<bool()>& condition,
    std::chrono::milliseconds limit)
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
        std::this_thread::sleep_for(interval);
    }
}

} // namespace

bool await(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    return awaitPollingEvery(std::chrono::milliseconds(1), condition, limit);
}

bool awaitWithPolling(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    return awaitPollingEvery(std::chrono::milliseconds(20), condition, limit);
}

void runEventLoop(std::chrono::milliseconds span)
{
    (void)await([] { return false; }, span);
}

} // namespace orlimo
