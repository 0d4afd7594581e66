// Prints the translation sample in the language for the user of this environment.

#include "resources/translations/TranslationCatalogue.h"
#include "tests/resources/translations/TranslationSample.h"

#include <iostream>

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    orlimo::installTranslations(application);
    std::cout << orlimo::translationSample() << '\n';
    return 0;
}
