<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar">
<context>
    <name>FolderView</name>
    <message>
        <location filename="../folderview.cpp" line="144" />
        <source>Up</source>
        <translation>إلى الأعلى</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="145" />
        <source>Choose folder…</source>
        <translation>اختيار مجلد…</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="146" />
        <source>Refresh</source>
        <translation>تحديث</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Name</source>
        <translation>الاسم</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Type</source>
        <translation>النوع</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Size</source>
        <translation>الحجم</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="147" />
        <source>Modified</source>
        <translation>تاريخ التعديل</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="181" />
        <source>Choose a folder</source>
        <translation>اختر مجلدًا</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="210" />
        <source>Folder</source>
        <translation>مجلد</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="211" />
        <source>File</source>
        <translation>ملف</translation>
    </message>
    <message>
        <location filename="../folderview.cpp" line="212" />
        <source>%1 file</source>
        <translation>ملف %1</translation>
    </message>
    <message numerus="yes">
        <location filename="../folderview.cpp" line="224" />
        <source>%n entries, %1 in total</source>
        <translation><numerusform>لا عناصر، %1 إجمالًا</numerusform><numerusform>عنصر واحد، %1 إجمالًا</numerusform><numerusform>عنصران، %1 إجمالًا</numerusform><numerusform>%n عناصر، %1 إجمالًا</numerusform><numerusform>%n عنصرًا، %1 إجمالًا</numerusform><numerusform>%n عنصر، %1 إجمالًا</numerusform></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../mainwindow.cpp" line="56" />
        <source>Folder sizes: %1</source>
        <translation>أحجام المجلدات: %1</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="97" />
        <source>Language changed</source>
        <translation>تم تغيير اللغة</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="98" />
        <source>The new language is used everywhere after a restart. Restart Folder Lens now?</source>
        <translation>تُستخدم اللغة الجديدة في كل مكان بعد إعادة التشغيل. هل تريد إعادة تشغيل Folder Lens الآن؟</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="99" />
        <source>Restart now</source>
        <translation>إعادة التشغيل الآن</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="100" />
        <source>Later</source>
        <translation>لاحقًا</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="109" />
        <source>Restart</source>
        <translation>إعادة التشغيل</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="109" />
        <source>Folder Lens could not be started again.</source>
        <translation>تعذّرت إعادة تشغيل Folder Lens.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="115" />
        <location filename="../mainwindow.cpp" line="121" />
        <source>Export listing</source>
        <translation>تصدير القائمة</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="116" />
        <source>Comma-separated values (*.csv)</source>
        <translation>قيم مفصولة بفواصل (*.csv)</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="121" />
        <source>The listing could not be written: %1</source>
        <translation>تعذّرت كتابة القائمة: %1</translation>
    </message>
</context>
</TS>
