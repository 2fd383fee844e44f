<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>言語を選択してください</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>注意：</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>変更を適用するため、プログラムを再起動します。</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>バージョン情報</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>バージョン：</translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>公式サイト</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>お問い合わせ</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>フィードバック</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>メニュー</translation>
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
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>開発元にフィードバックを送ります</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>メニューを開きます</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>ウィンドウを最小化します</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>ウィンドウを最大化します</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>ウィンドウを元のサイズに戻します</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>ウィンドウを閉じます</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>元に戻す(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>移動(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>サイズ変更(&amp;S)</translation>
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
        <translation>閉じる(&amp;C)</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>ウィンドウを閉じます</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>ウィンドウを最小化します</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>ウィンドウを最大化します</translation>
    </message>
</context>
</TS>
