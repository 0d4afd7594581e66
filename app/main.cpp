#include "app/OrlimoApp.h"
#include "platform/StandardStreams.h"

#include <QGuiApplication>

int main(int argc, char* argv[])
{
    orlimo::prepareStandardStreams();
    QGuiApplication::setApplicationName(QStringLiteral("Orlimo"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication application(argc, argv);

    orlimo::OrlimoApp app;
    app.appDelegate().applicationWillFinishLaunching();
    return QGuiApplication::exec();
}
