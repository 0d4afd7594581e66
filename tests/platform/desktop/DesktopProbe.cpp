// A program with a tray icon, its window and an About panel. It prints what happens to them; each
// line of standard input is a command and gets one line in response: "text" of the window's field,
// "about", or "open if no tray". With the argument "window" it is another program, with one plain
// window that takes the focus.

#include "platform/desktop/ApplicationDelegate.h"
#include "platform/desktop/SharedApplication.h"
#include "platform/menubar/MenuBarExtra.h"
#include "platform/threads/UptimeClock.h"
#include "resources/ImageIcon.h"

#include <QApplication>
#include <QLineEdit>
#include <QSocketNotifier>
#include <QVBoxLayout>

#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
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

int runExtra()
{
    auto made = std::make_unique<Content>();
    Content& content = *made;
    const auto extra = MenuBarExtra::create(
        [&made]() -> std::unique_ptr<QWidget> { return std::move(made); },
        templateIcon(QStringLiteral("StatusBarIcon")),
        currentUptime);
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &content, [&] {
        std::string command;
        if (!std::getline(std::cin, command)) {
            sharedApplication().terminate();
        } else if (command == "text") {
            say(content.text());
        } else {
            command == "about" ? sharedApplication().orderFrontStandardAboutPanel()
                               : extra->openIfNoTray();
            say("done");
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
    std::optional<QGuiApplication> withoutWindows;
    if (what == "application without windows") {
        withoutWindows.emplace(argc, argv);
    }
    if (what == "no application" || withoutWindows) {
        (void)orlimo::sharedApplication(); // ends the program
    }
    const QApplication application(argc, argv);
    return what == "window" ? orlimo::runWindow() : orlimo::runExtra();
}
