<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>请选择语言</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>提示：</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>程序将重新启动以应用更改。</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>关于我们</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>版本：</translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>官方网站</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>联系客服</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>反馈</translation>
    </message>
</context>
</TS>
