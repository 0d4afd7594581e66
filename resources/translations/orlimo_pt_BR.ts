<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>Sobre o %1</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versão %1</translation>
    </message>
</context>
<context>
    <name>LoginItemService</name>
    <message>
        <source>Orlimo copies verification codes as soon as they arrive.</source>
        <translation>O Orlimo copia os códigos de verificação assim que eles chegam.</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>Abrir o Orlimo</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Encerrar</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>Permitir acesso</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>O Acesso Total ao Disco é necessário para ler o código de verificação no app Mensagens.</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>Abra Ajustes do Sistema &gt; Privacidade e Segurança &gt; Acesso Total ao Disco e permita o Orlimo na lista.</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>Abrir Ajustes do Sistema</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>Opções de captura</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>Copiar automaticamente</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>Incluir códigos de 4 dígitos</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Abrir ao iniciar sessão</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>Código mais recente</translation>
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
        <translation>Sobre o Orlimo</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>Abrir site</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Encerrar</translation>
    </message>
</context>
</TS>
