<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>Please select a language</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>Notice:</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>The program will restart in order to apply the changes.</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>About Us</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>Version: </translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>Official Website</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Contact Support</translation>
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
        <translation>Menu</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Minimise</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Maximise</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Restore</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>Sends feedback to the makers</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>Opens the menu</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Minimises the window</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Maximises the window</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>Restores the window to its size</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Closes the window</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Restore</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Move</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>&amp;Size</translation>
    </message>
    <message>
        <source>Mi&amp;nimise</source>
        <translation>Mi&amp;nimise</translation>
    </message>
    <message>
        <source>Ma&amp;ximise</source>
        <translation>Ma&amp;ximise</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Close</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>Closes the window</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Minimise</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>Minimises the window</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>Maximise</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>Maximises the window</translation>
    </message>
</context>
</TS>
