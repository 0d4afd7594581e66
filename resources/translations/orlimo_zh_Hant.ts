<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hant" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>關於 %1</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>版本 %1</translation>
    </message>
</context>
<context>
    <name>LoginItemService</name>
    <message>
        <source>Orlimo copies verification codes as soon as they arrive.</source>
        <translation>Orlimo 會在驗證碼送達時立即複製。</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>打開 Orlimo</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>結束</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>允許取用</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>需要「完全取用磁碟」權限才能從「訊息」讀取驗證碼。</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>打開「系統設定」&gt;「隱私權與安全性」&gt;「完全取用磁碟」，然後在列表中允許 Orlimo。</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>打開系統設定</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>驗證碼擷取選項</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>自動複製到剪貼簿</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>包含 4 位數驗證碼</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>登入時打開</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>最新驗證碼</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>複製</translation>
    </message>
</context>
<context>
    <name>orlimo::StatusMenuView</name>
    <message>
        <source>About</source>
        <translation>關於 Orlimo</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>打開網站</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>結束</translation>
    </message>
</context>
</TS>
