<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>FolderView</name>
    <message>
        <location filename="../folderview.cpp" line="144" />
        <source>Up</source>
        <translation>Dossier parent</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="145" />
        <source>Choose folder…</source>
        <translation>Choisir un dossier…</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="146" />
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Modified</source>
        <translation>Modifié</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="181" />
        <source>Choose a folder</source>
        <translation>Choisir un dossier</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="210" />
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="211" />
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="212" />
        <source>%1 file</source>
        <translation>Fichier %1</translation>
    </message>
    <message numerus="yes">
        <location filename="../folderview.cpp" line="224" />
        <source>%n entries, %1 in total</source>
        <translation><numerusform>%n élément, %1 au total</numerusform><numerusform>%n éléments, %1 au total</numerusform></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../mainwindow.cpp" line="56" />
        <source>Folder sizes: %1</source>
        <translation>Tailles des dossiers : %1</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="97" />
        <source>Language changed</source>
        <translation>Langue modifiée</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="98" />
        <source>The new language is used everywhere after a restart. Restart Folder Lens now?</source>
        <translation>La nouvelle langue s’applique partout après un redémarrage. Redémarrer Folder Lens maintenant ?</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="99" />
        <source>Restart now</source>
        <translation>Redémarrer maintenant</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="100" />
        <source>Later</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="109" />
        <source>Restart</source>
        <translation>Redémarrage</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="109" />
        <source>Folder Lens could not be started again.</source>
        <translation>Folder Lens n’a pas pu être redémarré.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="115" />
        <location filename="../mainwindow.cpp" line="121" />
        <source>Export listing</source>
        <translation>Exporter la liste</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="116" />
        <source>Comma-separated values (*.csv)</source>
        <translation>Valeurs séparées par des virgules (*.csv)</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="121" />
        <source>The listing could not be written: %1</source>
        <translation>La liste n’a pas pu être écrite : %1</translation>
    </message>
</context>
</TS>
