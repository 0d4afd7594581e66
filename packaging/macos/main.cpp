#include "packaging/macos/IconSet.h"

#include <QGuiApplication>

#include <iostream>

/// Draws the program's icon set into the folder that is its one argument.
int main(int argc, char* argv[])
{
    // Drawn in memory: nobody has to be logged in at a screen.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 2) {
        std::cerr << "Usage: orlimo-icon-set FOLDER.iconset\n";
        return 2;
    }
    if (!orlimo::IconSet::writeTo(arguments.at(1))) {
        std::cerr << "orlimo-icon-set: cannot write into " << arguments.at(1).toStdString() << '\n';
        return 1;
    }
    return 0;
}
