<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>언어를 선택하세요</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>알림:</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>변경 사항을 적용하기 위해 프로그램을 다시 시작합니다.</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>회사 소개</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>버전: </translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>공식 웹사이트</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>고객 지원</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>피드백</translation>
    </message>
</context>
</TS>
