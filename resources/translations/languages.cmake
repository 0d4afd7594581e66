# The languages other than English that the program speaks, and what they are called in English. Everything
# that lists them is generated from here: the catalogues that are compiled and their table in the code, the
# desktop entry, the metainfo, the manual page, macOS's list of localizations, and the tests. A language is
# named as its catalogue orlimo_LL.ts is.
set(ORLIMO_LANGUAGES)
macro(orlimo_language language name)
    list(APPEND ORLIMO_LANGUAGES ${language})
    set(ORLIMO_LANGUAGE_NAME_${language} ${name})
    # Desktops and Qt name Chinese by the territory, not by the script.
    string(REPLACE "zh_Hans" "zh_CN" ORLIMO_LOCALE_${language} ${language})
    string(REPLACE "zh_Hant" "zh_TW" ORLIMO_LOCALE_${language} ${ORLIMO_LOCALE_${language}})
endmacro()

orlimo_language(de "German")
orlimo_language(es "Spanish")
orlimo_language(fr "French")
orlimo_language(it "Italian")
orlimo_language(ja "Japanese")
orlimo_language(ko "Korean")
orlimo_language(pt_BR "Brazilian Portuguese")
orlimo_language(zh_Hans "Simplified Chinese")
orlimo_language(zh_Hant "Traditional Chinese")
