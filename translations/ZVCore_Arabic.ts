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
</context>
</TS>
