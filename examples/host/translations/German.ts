<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>FolderView</name>
    <message>
        <location filename="../folderview.cpp" line="144" />
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="145" />
        <source>Choose folder…</source>
        <translation>Ordner wählen…</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="146" />
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="181" />
        <source>Choose a folder</source>
        <translation>Einen Ordner wählen</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="210" />
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="211" />
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="212" />
        <source>%1 file</source>
        <translation>%1-Datei</translation>
    </message>
    <message numerus="yes">
        <location filename="../folderview.cpp" line="224" />
        <source>%n entries, %1 in total</source>
        <translation><numerusform>%n Eintrag, insgesamt %1</numerusform><numerusform>%n Einträge, insgesamt %1</numerusform></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../mainwindow.cpp" line="56" />
        <source>Folder sizes: %1</source>
        <translation>Ordnergrößen: %1</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="97" />
        <source>Language changed</source>
        <translation>Sprache geändert</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="98" />
        <source>The new language is used everywhere after a restart. Restart Folder Lens now?</source>
        <translation>Die neue Sprache gilt nach einem Neustart überall. Folder Lens jetzt neu starten?</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="99" />
        <source>Restart now</source>
        <translation>Jetzt neu starten</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="100" />
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="109" />
        <source>Restart</source>
        <translation>Neustart</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="109" />
        <source>Folder Lens could not be started again.</source>
        <translation>Folder Lens konnte nicht neu gestartet werden.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="115" />
        <location filename="../mainwindow.cpp" line="121" />
        <source>Export listing</source>
        <translation>Liste exportieren</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="116" />
        <source>Comma-separated values (*.csv)</source>
        <translation>Kommagetrennte Werte (*.csv)</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="121" />
        <source>The listing could not be written: %1</source>
        <translation>Die Liste konnte nicht geschrieben werden: %1</translation>
    </message>
</context>
</TS>
