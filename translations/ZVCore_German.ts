<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>Bitte wählen Sie eine Sprache</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>Hinweis:</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>Das Programm wird neu gestartet, um die Änderungen zu übernehmen.</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>Über uns</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>Version: </translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>Offizielle Website</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Support kontaktieren</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>Feedback</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Maximieren</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>Sendet Feedback an die Entwickler</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>Öffnet das Menü</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Minimiert das Fenster</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Maximiert das Fenster</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>Stellt die Fenstergröße wieder her</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Schließt das Fenster</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Verschieben</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>&amp;Größe ändern</translation>
    </message>
    <message>
        <source>Mi&amp;nimise</source>
        <translation>Mi&amp;nimieren</translation>
    </message>
    <message>
        <source>Ma&amp;ximise</source>
        <translation>Ma&amp;ximieren</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Schließt das Fenster</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Minimiert das Fenster</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Maximieren</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Maximiert das Fenster</translation>
    </message>
</context>
</TS>
