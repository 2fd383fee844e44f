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
</context>
</TS>
