<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>Veuillez sélectionner une langue</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>Remarque&#xa0;:</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>Le programme va redémarrer pour appliquer les modifications.</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>À propos de nous</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>Version&#xa0;: </translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>Site officiel</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Contacter le support</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>Commentaires</translation>
    </message>
</context>
</TS>
