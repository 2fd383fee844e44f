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
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Agrandir</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Restaurer</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>Envoie un avis aux auteurs</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>Ouvre le menu</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Réduit la fenêtre</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Agrandit la fenêtre</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>Rend à la fenêtre sa taille</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Ferme la fenêtre</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Restaurer</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Déplacer</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>&amp;Taille</translation>
    </message>
    <message>
        <source>Mi&amp;nimise</source>
        <translation>Réd&amp;uire</translation>
    </message>
    <message>
        <source>Ma&amp;ximise</source>
        <translation>A&amp;grandir</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Ferme la fenêtre</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Réduit la fenêtre</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Agrandir</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Agrandit la fenêtre</translation>
    </message>
</context>
</TS>
