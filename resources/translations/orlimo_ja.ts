<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>%1について</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>バージョン%1</translation>
    </message>
</context>
<context>
    <name>LoginItemService</name>
    <message>
        <source>Orlimo copies verification codes as soon as they arrive.</source>
        <translation>Orlimoは、届いた確認コードをすぐにコピーします。</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>Orlimoを開く</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>アクセスを許可</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>「メッセージ」から確認コードを読み取るには、フルディスクアクセスが必要です。</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>「システム設定」&gt;「プライバシーとセキュリティ」&gt;「フルディスクアクセス」を開き、リストでOrlimoを許可してください。</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>システム設定を開く</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>コード取得オプション</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>クリップボードに自動コピー</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>4桁のコードを含める</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>ログイン時に開く</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>最新のコード</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
</context>
<context>
    <name>orlimo::StatusMenuView</name>
    <message>
        <source>About</source>
        <translation>Orlimoについて</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>Webサイトを開く</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
</context>
</TS>
