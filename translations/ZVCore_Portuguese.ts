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
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Minimizar</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Maximizar</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Restaurar</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>Envia comentários aos criadores</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>Abre o menu</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Minimiza a janela</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Maximiza a janela</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>Devolve a janela ao seu tamanho</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Fecha a janela</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Restaurar</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Mover</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>&amp;Tamanho</translation>
    </message>
    <message>
        <source>Mi&amp;nimise</source>
        <translation>Mi&amp;nimizar</translation>
    </message>
    <message>
        <source>Ma&amp;ximise</source>
        <translation>Ma&amp;ximizar</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fechar</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Fecha a janela</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Minimizar</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Minimiza a janela</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Maximizar</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Maximiza a janela</translation>
    </message>
</context>
</TS>
