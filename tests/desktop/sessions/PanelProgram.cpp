// A panel that shows status notifier items but draws nothing: the watcher with which items
// register, and the panel's host. Each line of standard input, "host comes" or "host goes", is
// acknowledged by a line. With the argument "no host" only the watcher is there at first.
// With the argument "clock" it reads no input and prints when each item registers, in nanoseconds
// of CLOCK_MONOTONIC, and its name.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QSocketNotifier>
#include <QStringList>

#include <ctime>
#include <iostream>
#include <string>

#include <unistd.h>

namespace orlimo {

class StatusNotifierWatcher final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    /// Takes the watcher's name on the bus. A host that is there from the start is not announced.
    explicit StatusNotifierWatcher(bool withHost)
        : host(withHost)
    {
        owners.setConnection(bus);
        owners.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        QObject::connect(
            &owners,
            &QDBusServiceWatcher::serviceUnregistered,
            this,
            [this](const QString& service) {
                registered.removeAll(service);
                Q_EMIT StatusNotifierItemUnregistered(service);
            });
        bus.registerObject(
            QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportAllContents);
        bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }

    [[nodiscard]] bool hasHost() const { return host; }
    [[nodiscard]] QStringList items() const { return registered; }

    void setHost(bool isPresent)
    {
        host = isPresent;
        if (host) {
            Q_EMIT StatusNotifierHostRegistered();
        } else {
            Q_EMIT StatusNotifierHostUnregistered();
        }
    }

public Q_SLOTS: // NOLINT(readability-redundant-access-specifiers): it makes slots
    void RegisterStatusNotifierItem(const QString& service)
    {
        // An item may give a path instead of its name on the bus.
        const QString name = service.startsWith(u'/') ? message().service() : service;
        registered.removeAll(name);
        registered.append(name);
        owners.addWatchedService(name);
        Q_EMIT StatusNotifierItemRegistered(name);
    }
    void RegisterStatusNotifierHost(const QString& /*service*/) { setHost(true); }

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    [[nodiscard]] static int protocolVersion() { return 0; }

    QDBusConnection bus = QDBusConnection::sessionBus();
    QDBusServiceWatcher owners;
    QStringList registered;
    bool host;
};

} // namespace orlimo

namespace {

using orlimo::StatusNotifierWatcher;

void printRegistration(const QString& service)
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    constexpr long perSecond = 1'000'000'000;
    std::cout << now.tv_sec * perSecond + now.tv_nsec << ' ' << service.toStdString() << std::endl;
}

void runCommand(StatusNotifierWatcher& watcher)
{
    std::string command;
    if (std::getline(std::cin, command)) {
        watcher.setHost(command == "host comes");
        std::cout << "done" << std::endl;
    } else {
        QCoreApplication::quit();
    }
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const std::string mode = argc < 2 ? "" : argv[1];
    StatusNotifierWatcher watcher(mode != "no host");
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    if (mode == "clock") {
        input.setEnabled(false);
        QObject::connect(
            &watcher, &StatusNotifierWatcher::StatusNotifierItemRegistered, printRegistration);
    }
    QObject::connect(
        &input, &QSocketNotifier::activated, &watcher, [&watcher] { runCommand(watcher); });
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}

#include "PanelProgram.moc"
