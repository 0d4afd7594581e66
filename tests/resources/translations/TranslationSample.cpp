#include "tests/resources/translations/TranslationSample.h"

#include <QCoreApplication>

namespace orlimo {

std::string translationSample()
{
    return (QCoreApplication::translate("orlimo::PopupView", "Copy") + QLatin1Char(' ') +
            QCoreApplication::translate("QPlatformTheme", "Cancel"))
        .toStdString();
}

const std::map<std::string, std::string>& translationSamplesByLanguage()
{
    static const std::map<std::string, std::string> words{
        {"English", "Copy Cancel"},
        {"de", "Kopieren Abbrechen"},
        {"es", "Copiar Cancelar"},
        {"fr", "Copier Annuler"},
        {"it", "Copia Annulla"},
        {"ja", "コピー キャンセル"},
        {"ko", "복사 취소"},
        {"pt_BR", "Copiar Cancelar"},
        {"zh_Hans", "复制 取消"},
        {"zh_Hant", "複製 取消"},
    };
    return words;
}

} // namespace orlimo
