<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>Seleccione un idioma</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>Aviso:</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>El programa se reiniciará para aplicar los cambios.</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>Acerca de nosotros</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>Versión: </translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>Sitio web oficial</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Contactar con soporte</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>Comentarios</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
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
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>Envía comentarios a los creadores</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>Abre el menú</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Minimiza la ventana</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Maximiza la ventana</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>Devuelve la ventana a su tamaño</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Cierra la ventana</translation>
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
        <translation>&amp;Tamaño</translation>
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
        <translation>&amp;Cerrar</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Cierra la ventana</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Minimizar</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Minimiza la ventana</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Maximizar</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Maximiza la ventana</translation>
    </message>
</context>
</TS>
