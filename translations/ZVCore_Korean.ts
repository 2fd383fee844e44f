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
    <message>
        <source>Menu</source>
        <translation>메뉴</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>최소화</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>최대화</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>이전 크기로 복원</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>개발자에게 의견을 보냅니다</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>메뉴를 엽니다</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>창을 최소화합니다</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>창을 최대화합니다</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>창을 이전 크기로 복원합니다</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>창을 닫습니다</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>이전 크기로(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>이동(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>크기 조정(&amp;S)</translation>
    </message>
    <message>
        <source>Mi&amp;nimise</source>
        <translation>최소화(&amp;N)</translation>
    </message>
    <message>
        <source>Ma&amp;ximise</source>
        <translation>최대화(&amp;X)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>닫기(&amp;C)</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>창을 닫습니다</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>최소화</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>창을 최소화합니다</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>최대화</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>창을 최대화합니다</translation>
    </message>
</context>
</TS>
