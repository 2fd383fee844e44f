<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar">
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../mainwindow.cpp" line="384" />
        <source>&amp;File</source>
        <translation>&amp;ملف</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="385" />
        <source>&amp;New</source>
        <translation>&amp;جديد</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="386" />
        <source>Starts an empty document</source>
        <translation>يبدأ مستندًا فارغًا</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="387" />
        <source>&amp;Open…</source>
        <translation>&amp;فتح…</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="389" />
        <location filename="../mainwindow.cpp" line="561" />
        <location filename="../mainwindow.cpp" line="631" />
        <source>Open</source>
        <translation>فتح</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="390" />
        <source>Opens a document</source>
        <translation>يفتح مستندًا</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="391" />
        <source>Open &amp;Recent</source>
        <translation>&amp;آخر الملفات</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="392" />
        <source>&amp;Clear List</source>
        <translation>&amp;مسح القائمة</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="393" />
        <source>&amp;Save</source>
        <translation>&amp;حفظ</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="394" />
        <source>Saves the document</source>
        <translation>يحفظ المستند</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="395" />
        <source>Save &amp;As…</source>
        <translation>حفظ &amp;باسم…</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="396" />
        <source>&amp;Quit</source>
        <translation>&amp;خروج</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="398" />
        <source>&amp;Edit</source>
        <translation>&amp;تحرير</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="399" />
        <source>&amp;Undo</source>
        <translation>&amp;تراجع</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="400" />
        <source>&amp;Redo</source>
        <translation>إ&amp;عادة</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="401" />
        <source>Cu&amp;t</source>
        <translation>&amp;قص</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="402" />
        <source>&amp;Copy</source>
        <translation>&amp;نسخ</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="403" />
        <source>&amp;Paste</source>
        <translation>&amp;لصق</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="404" />
        <source>Select &amp;All</source>
        <translation>تحديد ال&amp;كل</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="406" />
        <source>&amp;View</source>
        <translation>&amp;عرض</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="407" />
        <source>&amp;Help</source>
        <translation>م&amp;ساعدة</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="408" />
        <source>&amp;About %1</source>
        <translation>&amp;حول %1</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="412" />
        <source>File</source>
        <translation>ملف</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="413" />
        <source>&amp;File Tool Bar</source>
        <translation>شريط أدوات &amp;ملف</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="414" />
        <source>Edit</source>
        <translation>تحرير</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="415" />
        <source>&amp;Edit Tool Bar</source>
        <translation>شريط أدوات &amp;تحرير</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="416" />
        <source>Outline</source>
        <translation>المخطط</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="417" />
        <source>&amp;Outline</source>
        <translation>&amp;المخطط</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="418" />
        <source>Statistics</source>
        <translation>الإحصاءات</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="419" />
        <source>S&amp;tatistics</source>
        <translation>ال&amp;إحصاءات</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="421" />
        <source>Words:</source>
        <translation>الكلمات:</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="422" />
        <source>Characters:</source>
        <translation>الأحرف:</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="423" />
        <source>Lines:</source>
        <translation>الأسطر:</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="432" />
        <location filename="../mainwindow.cpp" line="644" />
        <source>Untitled</source>
        <translation>بلا عنوان</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="462" />
        <source>Line %1, Column %2</source>
        <translation>السطر %1، العمود %2</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="489" />
        <source>No headings</source>
        <translation>لا توجد عناوين</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="542" />
        <source>The file does not exist.</source>
        <translation>الملف غير موجود.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="544" />
        <source>It is a folder.</source>
        <translation>المسار مجلد.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="547" />
        <source>It is not a regular file.</source>
        <translation>المسار ليس ملفًا عاديًا.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="549" />
        <source>It is larger than %1 MB.</source>
        <translation>حجم الملف أكبر من %1 ميغابايت.</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="561" />
        <source>"%1" could not be opened. %2</source>
        <translation>تعذّر فتح «%1». %2</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="589" />
        <source>Saved</source>
        <translation>تم الحفظ</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="593" />
        <source>Save</source>
        <translation>حفظ</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="593" />
        <source>"%1" could not be saved. %2</source>
        <translation>تعذّر حفظ «%1». %2</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="609" />
        <source>Unsaved Changes</source>
        <translation>تغييرات غير محفوظة</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="610" />
        <source>"%1" has been changed. Do you want to save the changes?</source>
        <translation>تم تغيير «%1». هل تريد حفظ التغييرات؟</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="632" />
        <location filename="../mainwindow.cpp" line="647" />
        <source>Text files (*.txt *.md);;All files (*)</source>
        <translation>ملفات نصية (*.txt *.md);;كل الملفات (*)</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="646" />
        <source>Save As</source>
        <translation>حفظ باسم</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="733" />
        <source>About %1</source>
        <translation>حول %1</translation>
    </message>
    <message>
        <location filename="../mainwindow.cpp" line="734" />
        <source>%1 %2

A small editor for plain-text notes.</source>
        <translation>%1 %2

محرر صغير للملاحظات النصية.</translation>
    </message>
</context>
</TS>
