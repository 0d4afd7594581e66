<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>Acerca de %1</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
</context>
<context>
    <name>LoginItemService</name>
    <message>
        <source>Orlimo copies verification codes as soon as they arrive.</source>
        <translation>Orlimo copia los códigos de verificación en cuanto llegan.</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>Abrir Orlimo</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>Permitir el acceso</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>Se necesita acceso total al disco para leer el código de verificación en Mensajes.</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>Abre Ajustes del Sistema &gt; Privacidad y seguridad &gt; Acceso total al disco y activa Orlimo en la lista.</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>Abrir Ajustes del Sistema</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>Opciones de captura</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>Copiar automáticamente</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>Incluir códigos de 4 dígitos</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Abrir al iniciar sesión</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>Código más reciente</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
</context>
<context>
    <name>orlimo::StatusMenuView</name>
    <message>
        <source>About</source>
        <translation>Acerca de Orlimo</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>Abrir sitio web</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
</context>
</TS>
