// Says, on one line, in which language the program and the toolkit would speak to the user of this
// environment, by a word of each.

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
