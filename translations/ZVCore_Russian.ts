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
    <message>
        <source>Menu</source>
        <translation>Меню</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Свернуть</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Развернуть</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Восстановить</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>Отправляет отзыв разработчикам</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>Открывает меню</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Сворачивает окно</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Разворачивает окно</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>Восстанавливает размер окна</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Закрывает окно</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Восстановить</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Переместить</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>Р&amp;азмер</translation>
    </message>
    <message>
        <source>Mi&amp;nimise</source>
        <translation>Св&amp;ернуть</translation>
    </message>
    <message>
        <source>Ma&amp;ximise</source>
        <translation>Ра&amp;звернуть</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Закрыть</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Закрывает окно</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Свернуть</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Сворачивает окно</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Развернуть</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Разворачивает окно</translation>
    </message>
</context>
</TS>
