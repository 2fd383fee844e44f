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
    <message>
        <source>Menu</source>
        <translation>菜单</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>还原</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>向开发者发送反馈</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>打开菜单</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>最小化窗口</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>最大化窗口</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>将窗口还原为原来的大小</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>关闭窗口</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>还原(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>移动(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>大小(&amp;S)</translation>
    </message>
    <message>
        <source>Mi&amp;nimise</source>
        <translation>最小化(&amp;N)</translation>
    </message>
    <message>
        <source>Ma&amp;ximise</source>
        <translation>最大化(&amp;X)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>关闭(&amp;C)</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>关闭窗口</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>最小化窗口</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>最大化窗口</translation>
    </message>
</context>
</TS>
