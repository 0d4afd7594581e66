<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>Informazioni su %1</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versione %1</translation>
    </message>
</context>
<context>
    <name>LoginItemService</name>
    <message>
        <source>Orlimo copies verification codes as soon as they arrive.</source>
        <translation>Orlimo copia i codici di verifica appena arrivano.</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>Apri Orlimo</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Esci</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>Consenti l’accesso</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>Per leggere il codice di verifica da Messaggi è necessario l’accesso completo al disco.</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>Apri Impostazioni di Sistema &gt; Privacy e sicurezza &gt; Accesso completo al disco e attiva Orlimo nell’elenco.</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>Apri Impostazioni di Sistema</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>Opzioni di acquisizione</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>Copia automaticamente</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>Includi codici a 4 cifre</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Apri al login</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>Ultimo codice</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copia</translation>
    </message>
</context>
<context>
    <name>orlimo::StatusMenuView</name>
    <message>
        <source>About</source>
        <translation>Informazioni su Orlimo</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>Apri sito web</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Esci</translation>
    </message>
</context>
</TS>
