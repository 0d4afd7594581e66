<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>Über %1</translation>
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
        <translation>Orlimo kopiert Bestätigungscodes, sobald sie eintreffen.</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>Orlimo öffnen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>Zugriff erlauben</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>Um den Bestätigungscode aus „Nachrichten“ zu lesen, ist der Festplattenvollzugriff erforderlich.</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>„Systemeinstellungen“ &gt; „Datenschutz &amp; Sicherheit“ &gt; „Festplattenvollzugriff“ öffnen und Orlimo in der Liste erlauben.</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>Systemeinstellungen öffnen</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>Erfassungsoptionen</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>Automatisch kopieren</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>4-stellige Codes erfassen</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Bei der Anmeldung öffnen</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>Neuester Code</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
</context>
<context>
    <name>orlimo::StatusMenuView</name>
    <message>
        <source>About</source>
        <translation>Über Orlimo</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>Website öffnen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
</context>
</TS>
