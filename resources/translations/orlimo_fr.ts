<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>À propos d’%1</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>LoginItemService</name>
    <message>
        <source>Orlimo copies verification codes as soon as they arrive.</source>
        <translation>Orlimo copie les codes de validation dès leur arrivée.</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>Ouvrir Orlimo</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>Autoriser l’accès</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>L’accès complet au disque est nécessaire pour lire le code de validation dans Messages.</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>Ouvrez Réglages Système &gt; Confidentialité et sécurité &gt; Accès complet au disque et autorisez Orlimo dans la liste.</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>Ouvrir Réglages Système</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>Options de capture</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>Copier automatiquement</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>Inclure les codes à 4 chiffres</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Ouvrir avec la session</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>Dernier code</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
</context>
<context>
    <name>orlimo::StatusMenuView</name>
    <message>
        <source>About</source>
        <translation>À propos d’Orlimo</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>Ouvrir le site web</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
</context>
</TS>
