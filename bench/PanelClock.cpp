#include "tests/desktop/sessions/StatusNotifierWatcher.h"

#include <QCoreApplication>

#include <ctime>
#include <iostream>

/// A panel on the session bus that takes every icon and says when each came, on CLOCK_MONOTONIC in
/// nanoseconds.
int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const orlimo::StatusNotifierWatcher watcher(QDBusConnection::sessionBus(), true);
    QObject::connect(
        &watcher,
        &orlimo::StatusNotifierWatcher::StatusNotifierItemRegistered,
        [](const QString& service) {
            timespec now{};
            ::clock_gettime(CLOCK_MONOTONIC, &now);
            constexpr long perSecond = 1'000'000'000;
            std::cout << now.tv_sec * perSecond + now.tv_nsec << ' ' << service.toStdString()
                      << std::endl;
        });
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
