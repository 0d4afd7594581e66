<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>关于 %1</translation>
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
        <translation>Orlimo 会在验证码到达时立即复制。</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>打开 Orlimo</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>允许访问</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>需要“完全磁盘访问权限”才能从“信息”中读取验证码。</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>打开“系统设置”&gt;“隐私与安全性”&gt;“完全磁盘访问权限”，然后在列表中允许 Orlimo。</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>打开系统设置</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>验证码获取选项</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>自动复制到剪贴板</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>包含 4 位验证码</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>登录时打开</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>最新验证码</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
</context>
<context>
    <name>orlimo::StatusMenuView</name>
    <message>
        <source>About</source>
        <translation>关于 Orlimo</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>打开网站</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
</context>
</TS>
