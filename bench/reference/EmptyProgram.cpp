#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QWidget>

#include <cstdlib>
#include <string_view>

#include <unistd.h>

namespace {

void writeOutput(std::string_view line)
{
    if (::write(STDOUT_FILENO, line.data(), line.size()) < 0) {
        std::abort();
    }
}

QPixmap disc()
{
    constexpr int edge = 22;
    QPixmap pixmap(edge, edge);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setBrush(Qt::black);
    painter.drawEllipse(pixmap.rect().adjusted(2, 2, -2, -2));
    return pixmap;
}

} // namespace

/// The least that a program with an icon in the tray and a window can be: nothing is read, watched
/// or translated, and the window is empty. Says "application" when it has Qt's application
/// object, and "icon" when it has asked for its icon's place. With the argument --text there is one
/// line of text in the window.
int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    writeOutput("application\n");
    QWidget window;
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    window.setFixedSize(300, 540);
    QLabel label(&window);
    if (argc == 2 && std::string_view(argv[1]) == "--text") {
        label.setText(QStringLiteral("Latest Code"));
    }
    QSystemTrayIcon icon{QIcon(disc())};
    QObject::connect(&icon, &QSystemTrayIcon::activated, &window, [&window] {
        if (window.isHidden()) {
            window.show();
            window.raise();
            window.activateWindow();
        } else {
            window.hide();
        }
    });
    icon.show();
    writeOutput("icon\n");
    return QApplication::exec();
}
