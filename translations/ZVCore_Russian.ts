<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>Выберите язык</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>Внимание:</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>Программа будет перезапущена, чтобы применить изменения.</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>О нас</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>Версия: </translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>Официальный сайт</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Связаться с поддержкой</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>Обратная связь</translation>
    </message>
</context>
</TS>
