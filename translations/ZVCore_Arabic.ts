<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar">
<context>
    <name>LanguageSelectDialog</name>
    <message>
        <source>Please select a language</source>
        <translation>يرجى اختيار اللغة</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>موافق</translation>
    </message>
    <message>
        <source>Notice:</source>
        <translation>تنبيه:</translation>
    </message>
    <message>
        <source>The program will restart in order to apply the changes.</source>
        <translation>سيُعاد تشغيل البرنامج لتطبيق التغييرات.</translation>
    </message>
</context>
<context>
    <name>ZVAboutDialog</name>
    <message>
        <source>About Us</source>
        <translation>من نحن</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>الإصدار: </translation>
    </message>
    <message>
        <source>Official Website</source>
        <translation>الموقع الرسمي</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>الاتصال بالدعم</translation>
    </message>
</context>
<context>
    <name>ZVMainWindowTitle</name>
    <message>
        <source>Feedback</source>
        <translation>ملاحظات</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>القائمة</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>تصغير</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>تكبير</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>استعادة</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Sends feedback to the makers</source>
        <translation>يرسل ملاحظات إلى المطوّرين</translation>
    </message>
    <message>
        <source>Opens the menu</source>
        <translation>يفتح القائمة</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>يصغّر النافذة</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>يكبّر النافذة</translation>
    </message>
    <message>
        <source>Restores the window to its size</source>
        <translation>يعيد النافذة إلى حجمها</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>يغلق النافذة</translation>
    </message>
</context>
<context>
    <name>ZVCoreWindow</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;استعادة</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;نقل</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>ا&amp;لحجم</translation>
    </message>
    <message>
        <source>Mi&amp;nimise</source>
        <translation>ت&amp;صغير</translation>
    </message>
    <message>
        <source>Ma&amp;ximise</source>
        <translation>تك&amp;بير</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>إ&amp;غلاق</translation>
    </message>
</context>
<context>
    <name>ZVDialogTitleBar</name>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Closes the window</source>
        <translation>يغلق النافذة</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>تصغير</translation>
    </message>
    <message>
        <source>Minimises the window</source>
        <translation>يصغّر النافذة</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>تكبير</translation>
    </message>
    <message>
        <source>Maximises the window</source>
        <translation>يكبّر النافذة</translation>
    </message>
</context>
</TS>
