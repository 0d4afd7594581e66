// A program with a tray icon, its window and an About panel. It prints what happens to them; each
// line of standard input is a command and gets one line in response. With the argument "window" it
// is another program, with one plain window that takes the focus.

#include "platform/desktop/ApplicationDelegate.h"
#include "platform/desktop/SharedApplication.h"
#include "platform/menubar/MenuBarExtra.h"
#include "platform/threads/UptimeClock.h"
#include "resources/ImageIcon.h"

#include <QApplication>
#include <QIcon>
#include <QLineEdit>
#include <QSocketNotifier>
#include <QVBoxLayout>

#include <chrono>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

void say(const std::string& line)
{
    (void)std::puts(line.c_str());
    (void)std::fflush(stdout);
}

/// Prints when the window it is installed on opens, closes, gains or loses the focus.
class WindowReporter final : public QObject
{
protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        static const std::map<QEvent::Type, std::string> lines{
            {QEvent::Show, "opened"},
            {QEvent::Hide, "closed"},
            {QEvent::WindowActivate, "focused"},
            {QEvent::WindowDeactivate, "unfocused"},
        };
        const auto line = lines.find(event->type());
        if (line != lines.end()) {
            say(line->second);
        }
        return QObject::eventFilter(watched, event);
    }
};

class Content final : public QWidget
{
public:
    Content()
    {
        setWindowTitle(QStringLiteral("Content"));
        setFixedSize(300, 540);
        auto* const column = new QVBoxLayout(this);
        column->addWidget(&field);
        column->addStretch();
        installEventFilter(&reporter);
    }

    [[nodiscard]] std::string text() const { return field.text().toStdString(); }

private:
    QLineEdit field;
    WindowReporter reporter;
};

class Delegate final : public ApplicationDelegate
{
public:
    void applicationWillFinishLaunching() override { say("will finish launching"); }
    void applicationDidFinishLaunching() override { say("did finish launching"); }
    void applicationWillBecomeActive() override { say("will become active"); }
};

QIcon label()
{
    return templateIcon(QStringLiteral("StatusBarIcon"));
}

/// The system's clock until it is stopped, from then on a manual one.
class StoppableClock
{
public:
    void stop() { stoppedAt = currentUptime(); }
    void advance(std::chrono::seconds span) { stoppedAt.value() += span; }
    [[nodiscard]] Uptime now() const { return stoppedAt ? *stoppedAt : currentUptime(); }

private:
    std::optional<Uptime> stoppedAt;
};

std::string yesOrNo(bool value)
{
    return value ? "yes" : "no";
}

/// A command whose response is "done".
std::function<std::string()> done(const std::function<void()>& command)
{
    return [command] {
        command();
        return "done";
    };
}

int runExtra()
{
    auto made = std::make_unique<Content>();
    Content& content = *made;
    StoppableClock clock;
    const auto extra = MenuBarExtra::create(
        [&made]() -> std::unique_ptr<QWidget> { return std::move(made); },
        label(),
        [&clock] { return clock.now(); });
    QWidget beside;
    const auto showBeside = [&beside] {
        beside.setWindowTitle(QStringLiteral("Beside"));
        beside.setGeometry(20, 60, 200, 200);
        beside.show();
        beside.raise();
        beside.activateWindow();
    };
    const std::map<std::string, std::function<std::string()>> commands{
        {"is open", [&] { return yesOrNo(extra->isOpen()); }},
        {"open", done([&] { extra->open(); })},
        {"open where there is no icon", done([&] { extra->openIfNoTray(); })},
        {"open beside another window", done([&] {
             showBeside();
             extra->openIfNoTray();
         })},
        {"stop the clock", done([&] { clock.stop(); })},
        {"let a minute pass", done([&] { clock.advance(std::chrono::minutes(1)); })},
        {"open on request beside another window", done([&] {
             showBeside();
             extra->openOnRequest();
         })},
        {"text", [&] { return content.text(); }},
        {"about", done([] { sharedApplication().orderFrontStandardAboutPanel(); })},
    };
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &content, [&] {
        std::string command;
        if (std::getline(std::cin, command)) {
            say(commands.at(command)());
        } else {
            sharedApplication().terminate();
        }
    });
    Delegate delegate;
    return sharedApplication().run(delegate);
}

int runWindow()
{
    WindowReporter reporter;
    QWidget window;
    window.setWindowTitle(QStringLiteral("Other program"));
    window.resize(200, 200);
    window.installEventFilter(&reporter);
    window.show();
    return QApplication::exec();
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    const std::string what = argc > 1 ? argv[1] : "extra";
    if (what == "no application") {
        (void)orlimo::sharedApplication();
    }
    if (what == "application without windows") {
        const QGuiApplication application(argc, argv);
        (void)orlimo::sharedApplication();
    }
    const QApplication application(argc, argv);
    return what == "window" ? orlimo::runWindow() : orlimo::runExtra();
}
