// A program with a tray icon and its window. It prints what happens to them; each line of standard
// input is a command and gets one line in response: "text" of the window's field, or "open if no
// tray". With the argument "window" it is another program, with one plain window that takes the
// focus.

#include "platform/desktop/SharedApplication.h"
#include "platform/menubar/MenuBarExtra.h"
#include "platform/threads/UptimeClock.h"
#include "resources/ImageIcon.h"
#include "tests/platform/desktop/RecordingDelegate.h"

#include <QApplication>
#include <QLineEdit>
#include <QSocketNotifier>
#include <QVBoxLayout>

#include <iostream>
#include <map>
#include <memory>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

void say(const std::string& line)
{
    std::cout << line << std::endl; // NOLINT(performance-avoid-endl): the test waits for it
}

/// Prints when it opens, closes or gains the focus.
class ReportingWindow final : public QWidget
{
protected:
    bool event(QEvent* event) override
    {
        static const std::map<QEvent::Type, std::string> lines{
            {QEvent::Show, "opened"},
            {QEvent::Hide, "closed"},
            {QEvent::WindowActivate, "focused"}};
        if (const auto line = lines.find(event->type()); line != lines.end()) {
            say(line->second);
        }
        return QWidget::event(event);
    }
};

int runExtra()
{
    auto content = std::make_unique<ReportingWindow>();
    content->setWindowTitle(QStringLiteral("Content"));
    content->setFixedSize(300, 540);
    QLineEdit& field = *new QLineEdit; // the layout's widget takes it
    auto* const column = new QVBoxLayout(content.get());
    column->addWidget(&field);
    column->addStretch();
    const auto extra = MenuBarExtra::create(
        [&content]() -> std::unique_ptr<QWidget> { return std::move(content); },
        templateIcon(QStringLiteral("StatusBarIcon")),
        currentUptime);
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
        std::string command;
        if (!std::getline(std::cin, command)) {
            sharedApplication().terminate();
        } else if (command == "text") {
            say(field.text().toStdString());
        } else {
            extra->openIfNoTray();
            say("done");
        }
    });
    RecordingDelegate delegate;
    delegate.onDidFinish = [] { say("did finish launching"); };
    return sharedApplication().run(delegate);
}

int runWindow()
{
    ReportingWindow window;
    window.setWindowTitle(QStringLiteral("Other program"));
    window.resize(200, 200);
    window.show();
    return QApplication::exec();
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    return argc > 1 ? orlimo::runWindow() : orlimo::runExtra();
}
