<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../mainwindow.cpp" line="384" />
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="385" />
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="386" />
        <source>Starts an empty document</source>
        <translation>Beginnt ein leeres Dokument</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="387" />
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen…</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="389" />
        <location filename="../mainwindow.cpp" line="561" />
        <location filename="../mainwindow.cpp" line="631" />
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="390" />
        <source>Opens a document</source>
        <translation>Öffnet ein Dokument</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="391" />
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="392" />
        <source>&amp;Clear List</source>
        <translation>&amp;Liste leeren</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="393" />
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="394" />
        <source>Saves the document</source>
        <translation>Speichert das Dokument</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="395" />
        <source>Save &amp;As…</source>
        <translation>Speichern &amp;unter…</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="396" />
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="398" />
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="399" />
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="400" />
        <source>&amp;Redo</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="401" />
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="402" />
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="403" />
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="404" />
        <source>Select &amp;All</source>
        <translation>Alles a&amp;uswählen</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="406" />
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="407" />
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="408" />
        <source>&amp;About %1</source>
        <translation>Ü&amp;ber %1</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="412" />
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="413" />
        <source>&amp;File Tool Bar</source>
        <translation>&amp;Datei-Werkzeugleiste</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="414" />
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="415" />
        <source>&amp;Edit Tool Bar</source>
        <translation>&amp;Bearbeiten-Werkzeugleiste</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="416" />
        <source>Outline</source>
        <translation>Gliederung</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="417" />
        <source>&amp;Outline</source>
        <translation>&amp;Gliederung</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="418" />
        <source>Statistics</source>
        <translation>Statistik</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="419" />
        <source>S&amp;tatistics</source>
        <translation>&amp;Statistik</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="421" />
        <source>Words:</source>
        <translation>Wörter:</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="422" />
        <source>Characters:</source>
        <translation>Zeichen:</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="423" />
        <source>Lines:</source>
        <translation>Zeilen:</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="432" />
        <location filename="../mainwindow.cpp" line="644" />
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="462" />
        <source>Line %1, Column %2</source>
        <translation>Zeile %1, Spalte %2</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="489" />
        <source>No headings</source>
        <translation>Keine Überschriften</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="542" />
        <source>The file does not exist.</source>
        <translation>Die Datei existiert nicht.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="544" />
        <source>It is a folder.</source>
        <translation>Der Pfad ist ein Ordner.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="547" />
        <source>It is not a regular file.</source>
        <translation>Der Pfad ist keine reguläre Datei.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="549" />
        <source>It is larger than %1 MB.</source>
        <translation>Die Datei ist größer als %1 MB.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="561" />
        <source>"%1" could not be opened. %2</source>
        <translation>„%1“ konnte nicht geöffnet werden. %2</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="589" />
        <source>Saved</source>
        <translation>Gespeichert</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="593" />
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="593" />
        <source>"%1" could not be saved. %2</source>
        <translation>„%1“ konnte nicht gespeichert werden. %2</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="609" />
        <source>Unsaved Changes</source>
        <translation>Ungespeicherte Änderungen</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="610" />
        <source>"%1" has been changed. Do you want to save the changes?</source>
        <translation>„%1“ wurde geändert. Möchten Sie die Änderungen speichern?</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="632" />
        <location filename="../mainwindow.cpp" line="647" />
        <source>Text files (*.txt *.md);;All files (*)</source>
        <translation>Textdateien (*.txt *.md);;Alle Dateien (*)</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="646" />
        <source>Save As</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="733" />
        <source>About %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="734" />
        <source>%1 %2

A small editor for plain-text notes.</source>
        <translation>%1 %2

Ein kleiner Editor für Notizen in reinem Text.</translation>
    </message>
</context>
</TS>
