#pragma once

#include <QCoreApplication>

#include <map>
#include <string>

namespace orlimo {

/// The word "Copy" of the program and "Cancel" of Qt in the installed language.
inline std::string translationSample()
{
    return (QCoreApplication::translate("orlimo::PopupView", "Copy") + QLatin1Char(' ') +
            QCoreApplication::translate("QPlatformTheme", "Cancel"))
        .toStdString();
}

/// The sample in each catalogue's language.
inline const std::map<std::string, std::string> translationSamplesByLanguage{
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

} // namespace orlimo
