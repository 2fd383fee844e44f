<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>請選擇語言</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>確定</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>提示：</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>程式將重新啟動以套用變更。</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>關於我們</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>版本：</translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>官方網站</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>聯絡客服</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>意見回饋</translation>
    </message>
</context>
</TS>
