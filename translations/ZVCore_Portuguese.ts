<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>Selecione um idioma</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>Aviso:</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>O programa será reiniciado para aplicar as alterações.</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>Sobre nós</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>Versão: </translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>Site oficial</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Falar com o suporte</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>Comentários</translation>
    </message>
</context>
</TS>
