<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko_KR" sourcelanguage="en">
<context>
    <name>AboutPanel</name>
    <message>
        <source>About %1</source>
        <translation>%1에 관하여</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>버전 %1</translation>
    </message>
</context>
<context>
    <name>LoginItemService</name>
    <message>
        <source>Orlimo copies verification codes as soon as they arrive.</source>
        <translation>Orlimo는 인증 코드가 도착하는 즉시 복사합니다.</translation>
    </message>
</context>
<context>
    <name>MenuBarExtra</name>
    <message>
        <source>Open Orlimo</source>
        <translation>Orlimo 열기</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>종료</translation>
    </message>
</context>
<context>
    <name>orlimo::HelperView</name>
    <message>
        <source>Allow acess</source>
        <translation>접근 허용</translation>
    </message>
    <message>
        <source>Full Disk Access is required to read the verification code from Messages.</source>
        <translation>‘메시지’에서 인증 코드를 읽으려면 전체 디스크 접근 권한이 필요합니다.</translation>
    </message>
    <message>
        <source>open System Preferences &gt; Security &amp; Privacy &gt; Full Disk Access and allow Orlimo in the list.</source>
        <translation>시스템 설정 &gt; 개인정보 보호 및 보안 &gt; 전체 디스크 접근 권한을 열고 목록에서 Orlimo를 허용하십시오.</translation>
    </message>
    <message>
        <source>Open System Setting</source>
        <translation>시스템 설정 열기</translation>
    </message>
</context>
<context>
    <name>orlimo::PopupView</name>
    <message>
        <source>Capture Options</source>
        <translation>코드 인식 옵션</translation>
    </message>
    <message>
        <source>Auto Copy to Clipboard</source>
        <translation>클립보드에 자동 복사</translation>
    </message>
    <message>
        <source>Include 4 digit code</source>
        <translation>4자리 코드 포함</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>로그인 시 열기</translation>
    </message>
    <message>
        <source>Latest Code</source>
        <translation>최신 코드</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>복사</translation>
    </message>
</context>
<context>
    <name>orlimo::StatusMenuView</name>
    <message>
        <source>About</source>
        <translation>Orlimo에 관하여</translation>
    </message>
    <message>
        <source>Open website</source>
        <translation>웹사이트 열기</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>종료</translation>
    </message>
</context>
</TS>
