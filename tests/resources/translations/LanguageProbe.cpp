// Prints, on one line, a word of the program and one of Qt in the language for the user of this
// environment.

#include "resources/translations/TranslationCatalogue.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    orlimo::installTranslations(application);
    QTextStream(stdout) << QCoreApplication::translate("orlimo::PopupView", "Copy") << ' '
                        << QCoreApplication::translate("QPlatformTheme", "Cancel") << '\n';
    return 0;
}
