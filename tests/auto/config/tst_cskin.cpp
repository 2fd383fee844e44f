#include <ZVCore/CSkin>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTemporaryFile>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

#include <climits>
#include <cmath>
#include <limits>

namespace {

// QTEST_MAIN creates the application object first thing in main(), so the call without
// one is made by a static initialiser. The file holds a valid sheet: a skin that set it
// anyway, or kept it for later, would show it as the application's sheet.
struct StyleSetBeforeApplication
{
    StyleSetBeforeApplication()
    {
        applicationExisted = QCoreApplication::instance() != nullptr;
        if (file.open()) {
            fileWritten = file.write("QLabel { color: red; }") == 22;
            file.close();
        }
        CSkin::SetStyle(file.fileName());
    }

    QTemporaryFile file;
    bool applicationExisted = true;
    bool fileWritten = false;
};
StyleSetBeforeApplication s_styleSetBeforeApplication;

const QString kFamily = QStringLiteral("ZV Test Family");

void setByName(CSkin& skin, const QString& accessor, const QString& value)
{
    if (accessor == QLatin1String("image path"))
        skin.SetImagePath(value);
    else if (accessor == QLatin1String("qss path"))
        skin.SetQssPath(value);
    else if (accessor == QLatin1String("backup path"))
        skin.SetBackupPath(value);
    else if (accessor == QLatin1String("temp file path"))
        skin.SetTempFilePath(value);
    else if (accessor == QLatin1String("current language"))
        skin.SetCurrentLanguage(value);
    else
        QFAIL("unknown accessor");
}

QString getByName(const CSkin& skin, const QString& accessor)
{
    if (accessor == QLatin1String("image path"))
        return skin.GetImagePath();
    if (accessor == QLatin1String("qss path"))
        return skin.GetQssPath();
    if (accessor == QLatin1String("backup path"))
        return skin.GetBackupPath();
    if (accessor == QLatin1String("temp file path"))
        return skin.GetTempFilePath();
    if (accessor == QLatin1String("current language"))
        return skin.GetCurrentLanguage();
    return QStringLiteral("<unknown accessor>");
}

const QStringList kAccessors = {
    QStringLiteral("image path"),     QStringLiteral("qss path"),
    QStringLiteral("backup path"),    QStringLiteral("temp file path"),
    QStringLiteral("current language"),
};

// One set of values per letter, so that a copy shows which skin it came from.
void fill(CSkin& skin, const QString& tag)
{
    skin.SetFontName(QStringLiteral("Family ") + tag);
    skin.SetImagePath(QStringLiteral("image ") + tag);
    skin.SetQssPath(QStringLiteral("qss ") + tag);
    skin.SetBackupPath(QStringLiteral("backup ") + tag);
    skin.SetTempFilePath(QStringLiteral("temp ") + tag);
    skin.SetCurrentLanguage(QStringLiteral("language ") + tag);
}

void verifyFilled(const CSkin& skin, const QString& tag)
{
    QCOMPARE(skin.GetFontStyle(CSkin::Style0).family(), QStringLiteral("Family ") + tag);
    QCOMPARE(skin.GetImagePath(), QStringLiteral("image ") + tag);
    QCOMPARE(skin.GetQssPath(), QStringLiteral("qss ") + tag);
    QCOMPARE(skin.GetBackupPath(), QStringLiteral("backup ") + tag);
    QCOMPARE(skin.GetTempFilePath(), QStringLiteral("temp ") + tag);
    QCOMPARE(skin.GetCurrentLanguage(), QStringLiteral("language ") + tag);
}

} // namespace

class tst_CSkin : public QObject
{
    Q_OBJECT

private slots:
    // Must stay first: it looks at the application's sheet before any test sets one.
    void setStyleWithoutApplication();

    void enumerators_data();
    void enumerators();

    void defaults();
    void accessors_data();
    void accessors();
    void copies_data();
    void copies();

    void color_data();
    void color();
    void textColorStyle_data();
    void textColorStyle();
    void fontStyle_data();
    void fontStyle();

    void textPostfix_data();
    void textPostfix();
    void doubleMultiple_data();
    void doubleMultiple();
    void doubleMultipleUnboundedInput_data();
    void doubleMultipleUnboundedInput();

    void linkStr_data();
    void linkStr();

    void setStyle_data();
    void setStyle();
};

void tst_CSkin::setStyleWithoutApplication()
{
    QVERIFY(!s_styleSetBeforeApplication.applicationExisted);
    QVERIFY(s_styleSetBeforeApplication.fileWritten);
    QVERIFY(qobject_cast<QApplication*>(QCoreApplication::instance()));
    QCOMPARE(qApp->styleSheet(), QString());
}

void tst_CSkin::enumerators_data()
{
    QTest::addColumn<int>("actual");
    QTest::addColumn<int>("expected");

    QTest::newRow("ColorStyle::ColorUnused0") << int(CSkin::ColorUnused0) << 0;
    QTest::newRow("ColorStyle::SlateGray") << int(CSkin::SlateGray) << 1;
    QTest::newRow("ColorStyle::Gray120") << int(CSkin::Gray120) << 2;
    QTest::newRow("ColorStyle::Gray250") << int(CSkin::Gray250) << 3;
    QTest::newRow("ColorStyle::ColorUnused4") << int(CSkin::ColorUnused4) << 4;
    QTest::newRow("ColorStyle::SkyBlue") << int(CSkin::SkyBlue) << 5;
    QTest::newRow("ColorStyle::Gray88") << int(CSkin::Gray88) << 6;
    QTest::newRow("ColorStyle::Green") << int(CSkin::Green) << 7;
    QTest::newRow("ColorStyle::Gray169") << int(CSkin::Gray169) << 8;
    QTest::newRow("ColorStyle::RoyalBlue") << int(CSkin::RoyalBlue) << 9;
    QTest::newRow("ColorStyle::ColorUnused10") << int(CSkin::ColorUnused10) << 10;
    QTest::newRow("ColorStyle::Gray198") << int(CSkin::Gray198) << 11;
    QTest::newRow("ColorStyle::Gray187") << int(CSkin::Gray187) << 12;
    QTest::newRow("ColorStyle::Gray72") << int(CSkin::Gray72) << 13;
    QTest::newRow("ColorStyle::Gray230") << int(CSkin::Gray230) << 14;
    QTest::newRow("ColorStyle::Gray240") << int(CSkin::Gray240) << 15;
    QTest::newRow("ColorStyle::Gray153") << int(CSkin::Gray153) << 16;
    QTest::newRow("ColorStyle::LightBlue") << int(CSkin::LightBlue) << 17;
    QTest::newRow("ColorStyle::Gray51") << int(CSkin::Gray51) << 18;
    QTest::newRow("ColorStyle::Gray224") << int(CSkin::Gray224) << 19;
    QTest::newRow("ColorStyle::Gray102") << int(CSkin::Gray102) << 20;
    QTest::newRow("ColorStyle::Blue") << int(CSkin::Blue) << 21;
    QTest::newRow("ColorStyle::PaleBlue") << int(CSkin::PaleBlue) << 22;
    QTest::newRow("ColorStyle::Coral") << int(CSkin::Coral) << 23;

    QTest::newRow("ZVTextColor::TextGray") << int(CSkin::TextGray) << 0;
    QTest::newRow("ZVTextColor::TextWhite") << int(CSkin::TextWhite) << 1;
    QTest::newRow("ZVTextColor::TextBlack") << int(CSkin::TextBlack) << 2;

    QTest::newRow("FontStyle::Style0") << int(CSkin::Style0) << 0;
    QTest::newRow("FontStyle::Style1") << int(CSkin::Style1) << 1;
    QTest::newRow("FontStyle::Style2") << int(CSkin::Style2) << 2;
    QTest::newRow("FontStyle::Style3") << int(CSkin::Style3) << 3;
    QTest::newRow("FontStyle::Style4") << int(CSkin::Style4) << 4;
    QTest::newRow("FontStyle::Style5") << int(CSkin::Style5) << 5;
    QTest::newRow("FontStyle::Style6") << int(CSkin::Style6) << 6;
    QTest::newRow("FontStyle::Style7") << int(CSkin::Style7) << 7;
    QTest::newRow("FontStyle::Style8") << int(CSkin::Style8) << 8;
    QTest::newRow("FontStyle::Style9") << int(CSkin::Style9) << 9;
    QTest::newRow("FontStyle::Style10") << int(CSkin::Style10) << 10;
    QTest::newRow("FontStyle::Style11") << int(CSkin::Style11) << 11;
    QTest::newRow("FontStyle::Style12") << int(CSkin::Style12) << 12;
    QTest::newRow("FontStyle::Style13") << int(CSkin::Style13) << 13;
    QTest::newRow("FontStyle::Style14") << int(CSkin::Style14) << 14;
    QTest::newRow("FontStyle::Style15") << int(CSkin::Style15) << 15;
    QTest::newRow("FontStyle::Style16") << int(CSkin::Style16) << 16;
    QTest::newRow("FontStyle::Style17") << int(CSkin::Style17) << 17;
    QTest::newRow("FontStyle::Style18") << int(CSkin::Style18) << 18;
    QTest::newRow("FontStyle::Style19") << int(CSkin::Style19) << 19;
    QTest::newRow("FontStyle::Style20") << int(CSkin::Style20) << 20;
    QTest::newRow("FontStyle::Style21") << int(CSkin::Style21) << 21;
    QTest::newRow("FontStyle::Style22") << int(CSkin::Style22) << 22;
    QTest::newRow("FontStyle::Normal8") << int(CSkin::Normal8) << 23;
    QTest::newRow("FontStyle::Normal9") << int(CSkin::Normal9) << 24;
    QTest::newRow("FontStyle::Bold9") << int(CSkin::Bold9) << 25;
    QTest::newRow("FontStyle::Normal10") << int(CSkin::Normal10) << 26;
    QTest::newRow("FontStyle::Bold10") << int(CSkin::Bold10) << 27;
    QTest::newRow("FontStyle::Normal11") << int(CSkin::Normal11) << 28;
    QTest::newRow("FontStyle::Bold11") << int(CSkin::Bold11) << 29;
    QTest::newRow("FontStyle::Normal12") << int(CSkin::Normal12) << 30;
    QTest::newRow("FontStyle::Bold12") << int(CSkin::Bold12) << 31;
    QTest::newRow("FontStyle::Normal13") << int(CSkin::Normal13) << 32;
    QTest::newRow("FontStyle::Bold13") << int(CSkin::Bold13) << 33;
    QTest::newRow("FontStyle::Normal14") << int(CSkin::Normal14) << 34;
    QTest::newRow("FontStyle::Bold14") << int(CSkin::Bold14) << 35;
    QTest::newRow("FontStyle::Normal15") << int(CSkin::Normal15) << 36;
    QTest::newRow("FontStyle::Bold15") << int(CSkin::Bold15) << 37;
    QTest::newRow("FontStyle::Normal16") << int(CSkin::Normal16) << 38;
    QTest::newRow("FontStyle::Bold16") << int(CSkin::Bold16) << 39;
    QTest::newRow("FontStyle::Normal17") << int(CSkin::Normal17) << 40;
    QTest::newRow("FontStyle::Bold17") << int(CSkin::Bold17) << 41;
    QTest::newRow("FontStyle::Normal18") << int(CSkin::Normal18) << 42;
    QTest::newRow("FontStyle::Bold18") << int(CSkin::Bold18) << 43;
    QTest::newRow("FontStyle::Normal19") << int(CSkin::Normal19) << 44;
    QTest::newRow("FontStyle::Bold19") << int(CSkin::Bold19) << 45;
    QTest::newRow("FontStyle::Normal20") << int(CSkin::Normal20) << 46;
    QTest::newRow("FontStyle::Bold20") << int(CSkin::Bold20) << 47;
    QTest::newRow("FontStyle::Normal21") << int(CSkin::Normal21) << 48;
    QTest::newRow("FontStyle::Bold21") << int(CSkin::Bold21) << 49;
    QTest::newRow("FontStyle::Normal22") << int(CSkin::Normal22) << 50;
    QTest::newRow("FontStyle::Bold22") << int(CSkin::Bold22) << 51;
    QTest::newRow("FontStyle::Normal23") << int(CSkin::Normal23) << 52;
    QTest::newRow("FontStyle::Bold23") << int(CSkin::Bold23) << 53;
    QTest::newRow("FontStyle::Normal24") << int(CSkin::Normal24) << 54;
    QTest::newRow("FontStyle::Bold24") << int(CSkin::Bold24) << 55;
    QTest::newRow("FontStyle::Normal27") << int(CSkin::Normal27) << 56;
    QTest::newRow("FontStyle::Normal28") << int(CSkin::Normal28) << 57;
}

void tst_CSkin::enumerators()
{
    QFETCH(int, actual);
    QFETCH(int, expected);
    QCOMPARE(actual, expected);
}

void tst_CSkin::defaults()
{
    const CSkin skin;
    QCOMPARE(skin.GetImagePath(), QString());
    QCOMPARE(skin.GetQssPath(), QString());
    QCOMPARE(skin.GetBackupPath(), QString());
    QCOMPARE(skin.GetTempFilePath(), QString());
    QCOMPARE(skin.GetCurrentLanguage(), QString());
    QCOMPARE(skin.GetFontStyle(CSkin::Style0).family(), QString());
}

void tst_CSkin::accessors_data()
{
    QTest::addColumn<QString>("accessor");
    QTest::addColumn<QString>("value");

    QTest::newRow("image path") << QStringLiteral("image path")
                                << QStringLiteral("C:/Program Files/App/skin/PictureNormal/");
    QTest::newRow("qss path") << QStringLiteral("qss path") << QStringLiteral("C:/App/skin/qss/");
    QTest::newRow("backup path") << QStringLiteral("backup path") << QStringLiteral("D:\\backup\\");
    QTest::newRow("temp file path") << QStringLiteral("temp file path")
                                    << QStringLiteral("/tmp/zv-\u00e9t\u00e9.tmp");
    QTest::newRow("current language") << QStringLiteral("current language")
                                      << QStringLiteral("English");
    QTest::newRow("no check on the value") << QStringLiteral("image path")
                                           << QStringLiteral("  not a path \u4e2d ");
}

void tst_CSkin::accessors()
{
    QFETCH(QString, accessor);
    QFETCH(QString, value);

    CSkin skin;
    setByName(skin, accessor, value);
    QCOMPARE(getByName(skin, accessor), value);
    for (const QString& other : kAccessors) {
        if (other != accessor)
            QCOMPARE(getByName(skin, other), QString());
    }
    QCOMPARE(skin.GetFontStyle(CSkin::Style0).family(), QString());

    // Setting again replaces the value; an empty value clears it.
    setByName(skin, accessor, QStringLiteral("second"));
    QCOMPARE(getByName(skin, accessor), QStringLiteral("second"));
    setByName(skin, accessor, QString());
    QCOMPARE(getByName(skin, accessor), QString());
}

void tst_CSkin::copies_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("copy constructor") << QStringLiteral("copy constructor");
    QTest::newRow("assignment") << QStringLiteral("assignment");
    QTest::newRow("assignment to a default skin") << QStringLiteral("assignment to a default skin");
    QTest::newRow("self-assignment") << QStringLiteral("self-assignment");
}

void tst_CSkin::copies()
{
    QFETCH(QString, how);

    CSkin source;
    fill(source, QStringLiteral("A"));

    if (how == QLatin1String("self-assignment")) {
        const CSkin& alias = source;
        source = alias;
        verifyFilled(source, QStringLiteral("A"));
        return;
    }

    QScopedPointer<CSkin> copy;
    if (how == QLatin1String("copy constructor")) {
        copy.reset(new CSkin(source));
    } else {
        copy.reset(new CSkin);
        if (how == QLatin1String("assignment"))
            fill(*copy, QStringLiteral("B"));
        *copy = source;
    }
    verifyFilled(*copy, QStringLiteral("A"));
    verifyFilled(source, QStringLiteral("A"));

    // Independent afterwards, in both directions.
    fill(*copy, QStringLiteral("C"));
    verifyFilled(source, QStringLiteral("A"));
    fill(source, QStringLiteral("D"));
    verifyFilled(*copy, QStringLiteral("C"));
}

void tst_CSkin::color_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("red");
    QTest::addColumn<int>("green");
    QTest::addColumn<int>("blue");
    QTest::addColumn<QString>("text");

    QTest::newRow("int min") << INT_MIN << 255 << 255 << 255 << QStringLiteral("color:rgb(255, 255, 255);");
    QTest::newRow("-1") << -1 << 255 << 255 << 255 << QStringLiteral("color:rgb(255, 255, 255);");
    QTest::newRow("0 unused") << 0 << 255 << 255 << 255 << QStringLiteral("color:rgb(255, 255, 255);");
    QTest::newRow("1 SlateGray") << 1 << 97 << 108 << 114 << QStringLiteral("color:rgb(97, 108, 114);");
    QTest::newRow("2 Gray120") << 2 << 120 << 120 << 120 << QStringLiteral("color:rgb(120, 120, 120);");
    QTest::newRow("3 Gray250") << 3 << 250 << 250 << 250 << QStringLiteral("color:rgb(250, 250, 250);");
    QTest::newRow("4 unused") << 4 << 255 << 255 << 255 << QStringLiteral("color:rgb(255, 255, 255);");
    QTest::newRow("5 SkyBlue") << 5 << 21 << 160 << 245 << QStringLiteral("color:rgb(21, 160, 245);");
    QTest::newRow("6 Gray88") << 6 << 88 << 88 << 88 << QStringLiteral("color:rgb(88, 88, 88);");
    QTest::newRow("7 Green") << 7 << 85 << 179 << 104 << QStringLiteral("color:rgb(85, 179, 104);");
    QTest::newRow("8 Gray169") << 8 << 169 << 169 << 169 << QStringLiteral("color:rgb(169, 169, 169);");
    QTest::newRow("9 RoyalBlue") << 9 << 55 << 125 << 255 << QStringLiteral("color:rgb(55, 125, 255);");
    QTest::newRow("10 unused") << 10 << 255 << 255 << 255 << QStringLiteral("color:rgb(255, 255, 255);");
    QTest::newRow("11 Gray198") << 11 << 198 << 198 << 198 << QStringLiteral("color:rgb(198, 198, 198);");
    QTest::newRow("12 Gray187") << 12 << 187 << 187 << 187 << QStringLiteral("color:rgb(187, 187, 187);");
    QTest::newRow("13 Gray72") << 13 << 72 << 72 << 72 << QStringLiteral("color:rgb(72, 72, 72);");
    QTest::newRow("14 Gray230") << 14 << 230 << 230 << 230 << QStringLiteral("color:rgb(230, 230, 230);");
    QTest::newRow("15 Gray240") << 15 << 240 << 240 << 240 << QStringLiteral("color:rgb(240, 240, 240);");
    QTest::newRow("16 Gray153") << 16 << 153 << 153 << 153 << QStringLiteral("color:rgb(153, 153, 153);");
    QTest::newRow("17 LightBlue") << 17 << 57 << 172 << 253 << QStringLiteral("color:rgb(57, 172, 253);");
    QTest::newRow("18 Gray51") << 18 << 51 << 51 << 51 << QStringLiteral("color:rgb(51, 51, 51);");
    QTest::newRow("19 Gray224") << 19 << 224 << 224 << 224 << QStringLiteral("color:rgb(224, 224, 224);");
    QTest::newRow("20 Gray102") << 20 << 102 << 102 << 102 << QStringLiteral("color:rgb(102, 102, 102);");
    QTest::newRow("21 Blue") << 21 << 0 << 136 << 255 << QStringLiteral("color:rgb(0, 136, 255);");
    QTest::newRow("22 PaleBlue") << 22 << 70 << 168 << 254 << QStringLiteral("color:rgb(70, 168, 254);");
    QTest::newRow("23 Coral") << 23 << 250 << 98 << 75 << QStringLiteral("color:rgb(250, 98, 75);");
    QTest::newRow("24") << 24 << 255 << 255 << 255 << QStringLiteral("color:rgb(255, 255, 255);");
    QTest::newRow("int max") << INT_MAX << 255 << 255 << 255 << QStringLiteral("color:rgb(255, 255, 255);");
}

void tst_CSkin::color()
{
    QFETCH(int, style);
    QFETCH(int, red);
    QFETCH(int, green);
    QFETCH(int, blue);
    QFETCH(QString, text);

    const CSkin skin;
    const QColor color = skin.GetColor(static_cast<CSkin::ColorStyle>(style));
    QVERIFY(color.isValid());
    QCOMPARE(color.rgba(), qRgba(red, green, blue, 255));
    QCOMPARE(color.red(), red);
    QCOMPARE(color.green(), green);
    QCOMPARE(color.blue(), blue);
    QCOMPARE(color.alpha(), 255);
    QCOMPARE(skin.GetColorStyle(static_cast<CSkin::ColorStyle>(style)), text);
}

void tst_CSkin::textColorStyle_data()
{
    QTest::addColumn<int>("color");
    QTest::addColumn<QString>("text");

    QTest::newRow("int min") << INT_MIN << QString();
    QTest::newRow("-1") << -1 << QString();
    QTest::newRow("0 TextGray") << 0 << QStringLiteral("color:rgb(85, 85, 85);");
    QTest::newRow("1 TextWhite") << 1 << QStringLiteral("color:rgb(255, 255, 255);");
    QTest::newRow("2 TextBlack") << 2 << QStringLiteral("color:rgb(0, 0, 0);");
    QTest::newRow("3") << 3 << QString();
    QTest::newRow("int max") << INT_MAX << QString();
}

void tst_CSkin::textColorStyle()
{
    QFETCH(int, color);
    QFETCH(QString, text);

    const CSkin skin;
    const QString actual = skin.GetTextColorStyle(static_cast<CSkin::ZVTextColor>(color));
    QCOMPARE(actual, text);
}

void tst_CSkin::fontStyle_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("weight");
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<int>("strategy");

    QTest::newRow("int min") << INT_MIN << 50 << 15 << int(QFont::PreferDefault);
    QTest::newRow("-1 unknown") << -1 << 50 << 15 << int(QFont::PreferDefault);
    QTest::newRow("0 Style0") << 0 << 50 << 14 << int(QFont::PreferDefault);
    QTest::newRow("1 Style1") << 1 << 50 << 13 << int(QFont::PreferDefault);
    QTest::newRow("2 Style2") << 2 << 62 << 15 << int(QFont::PreferDefault);
    QTest::newRow("3 Style3") << 3 << 75 << 14 << int(QFont::PreferDefault);
    QTest::newRow("4 Style4") << 4 << 50 << 11 << int(QFont::PreferDefault);
    QTest::newRow("5 Style5") << 5 << 75 << 11 << int(QFont::PreferDefault);
    QTest::newRow("6 Style6") << 6 << 50 << 13 << int(QFont::PreferDefault);
    QTest::newRow("7 Style7") << 7 << 75 << 13 << int(QFont::PreferDefault);
    QTest::newRow("8 Style8") << 8 << 50 << 14 << int(QFont::PreferDefault);
    QTest::newRow("9 Style9") << 9 << 75 << 14 << int(QFont::PreferDefault);
    QTest::newRow("10 Style10") << 10 << 50 << 15 << int(QFont::PreferDefault);
    QTest::newRow("11 Style11") << 11 << 75 << 15 << int(QFont::PreferDefault);
    QTest::newRow("12 Style12") << 12 << 50 << 16 << int(QFont::PreferDefault);
    QTest::newRow("13 Style13") << 13 << 75 << 16 << int(QFont::PreferDefault);
    QTest::newRow("14 Style14") << 14 << 50 << 17 << int(QFont::PreferDefault);
    QTest::newRow("15 Style15") << 15 << 75 << 17 << int(QFont::PreferDefault);
    QTest::newRow("16 Style16") << 16 << 50 << 18 << int(QFont::PreferDefault);
    QTest::newRow("17 Style17") << 17 << 75 << 18 << int(QFont::PreferDefault);
    QTest::newRow("18 Style18") << 18 << 50 << 19 << int(QFont::PreferDefault);
    QTest::newRow("19 Style19") << 19 << 75 << 19 << int(QFont::PreferDefault);
    QTest::newRow("20 Style20") << 20 << 50 << 20 << int(QFont::PreferDefault);
    QTest::newRow("21 Style21") << 21 << 75 << 20 << int(QFont::PreferDefault);
    QTest::newRow("22 Style22") << 22 << 75 << 27 << int(QFont::PreferAntialias);
    QTest::newRow("23 Normal8") << 23 << 50 << 8 << int(QFont::PreferDefault);
    QTest::newRow("24 Normal9") << 24 << 50 << 9 << int(QFont::PreferDefault);
    QTest::newRow("25 Bold9") << 25 << 75 << 9 << int(QFont::PreferDefault);
    QTest::newRow("26 Normal10") << 26 << 50 << 10 << int(QFont::PreferDefault);
    QTest::newRow("27 Bold10") << 27 << 75 << 10 << int(QFont::PreferDefault);
    QTest::newRow("28 Normal11") << 28 << 50 << 11 << int(QFont::PreferDefault);
    QTest::newRow("29 Bold11") << 29 << 75 << 11 << int(QFont::PreferDefault);
    QTest::newRow("30 Normal12") << 30 << 50 << 12 << int(QFont::PreferDefault);
    QTest::newRow("31 Bold12") << 31 << 75 << 12 << int(QFont::PreferDefault);
    QTest::newRow("32 Normal13") << 32 << 50 << 13 << int(QFont::PreferDefault);
    QTest::newRow("33 Bold13") << 33 << 75 << 13 << int(QFont::PreferDefault);
    QTest::newRow("34 Normal14") << 34 << 50 << 14 << int(QFont::PreferDefault);
    QTest::newRow("35 Bold14") << 35 << 75 << 14 << int(QFont::PreferDefault);
    QTest::newRow("36 Normal15") << 36 << 50 << 15 << int(QFont::PreferDefault);
    QTest::newRow("37 Bold15") << 37 << 75 << 15 << int(QFont::PreferDefault);
    QTest::newRow("38 Normal16") << 38 << 50 << 16 << int(QFont::PreferDefault);
    QTest::newRow("39 Bold16") << 39 << 75 << 16 << int(QFont::PreferDefault);
    QTest::newRow("40 Normal17") << 40 << 50 << 17 << int(QFont::PreferDefault);
    QTest::newRow("41 Bold17") << 41 << 75 << 17 << int(QFont::PreferDefault);
    QTest::newRow("42 Normal18") << 42 << 50 << 18 << int(QFont::PreferDefault);
    QTest::newRow("43 Bold18") << 43 << 75 << 18 << int(QFont::PreferDefault);
    QTest::newRow("44 Normal19") << 44 << 50 << 19 << int(QFont::PreferDefault);
    QTest::newRow("45 Bold19") << 45 << 75 << 19 << int(QFont::PreferDefault);
    QTest::newRow("46 Normal20") << 46 << 50 << 20 << int(QFont::PreferDefault);
    QTest::newRow("47 Bold20") << 47 << 75 << 20 << int(QFont::PreferDefault);
    QTest::newRow("48 Normal21") << 48 << 50 << 21 << int(QFont::PreferDefault);
    QTest::newRow("49 Bold21") << 49 << 75 << 21 << int(QFont::PreferDefault);
    QTest::newRow("50 Normal22") << 50 << 50 << 22 << int(QFont::PreferDefault);
    QTest::newRow("51 Bold22") << 51 << 75 << 22 << int(QFont::PreferDefault);
    QTest::newRow("52 Normal23") << 52 << 50 << 23 << int(QFont::PreferDefault);
    QTest::newRow("53 Bold23") << 53 << 75 << 23 << int(QFont::PreferDefault);
    QTest::newRow("54 Normal24") << 54 << 50 << 24 << int(QFont::PreferDefault);
    QTest::newRow("55 Bold24") << 55 << 75 << 24 << int(QFont::PreferDefault);
    QTest::newRow("56 Normal27") << 56 << 50 << 27 << int(QFont::PreferDefault);
    QTest::newRow("57 Normal28") << 57 << 50 << 28 << int(QFont::PreferDefault);
    QTest::newRow("58 unknown") << 58 << 50 << 15 << int(QFont::PreferDefault);
    QTest::newRow("int max") << INT_MAX << 50 << 15 << int(QFont::PreferDefault);
}

void tst_CSkin::fontStyle()
{
    QFETCH(int, style);
    QFETCH(int, weight);
    QFETCH(int, pixelSize);
    QFETCH(int, strategy);

    CSkin skin;
    skin.SetFontName(kFamily);
    const QFont font = skin.GetFontStyle(static_cast<CSkin::FontStyle>(style));
    QCOMPARE(font.family(), kFamily);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    // The table gives Qt 5's weights (50 normal, 62, 75 bold). Qt 6 weighs on the
    // OpenType scale; a Qt 5 font string carries a Qt 5 weight, and Qt 6 reading one
    // says which weight of its own scale it stands for.
    QFont qt5;
    QVERIFY(qt5.fromString(QStringLiteral("X,12,-1,5,%1,0,0,0,0,0").arg(weight)));
    QCOMPARE(int(font.weight()), int(qt5.weight()));
    QVERIFY(weight != 50 || font.weight() == QFont::Normal);
    QVERIFY(weight != 75 || font.weight() == QFont::Bold);
#else
    QCOMPARE(font.weight(), weight);
#endif
    QCOMPARE(font.pixelSize(), pixelSize);
    QCOMPARE(font.pointSize(), -1);
    QCOMPARE(font.italic(), false);
    QCOMPARE(int(font.styleStrategy()), strategy);
}

void tst_CSkin::textPostfix_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("text");

    QTest::newRow("int min") << INT_MIN << QStringLiteral("GB");
    QTest::newRow("-1") << -1 << QStringLiteral("GB");
    QTest::newRow("0") << 0 << QStringLiteral("Byte");
    QTest::newRow("1") << 1 << QStringLiteral("KB");
    QTest::newRow("2") << 2 << QStringLiteral("MB");
    QTest::newRow("3") << 3 << QStringLiteral("GB");
    QTest::newRow("4") << 4 << QStringLiteral("GB");
    QTest::newRow("int max") << INT_MAX << QStringLiteral("GB");
}

void tst_CSkin::textPostfix()
{
    QFETCH(int, unit);
    QFETCH(QString, text);

    CSkin skin;
    QCOMPARE(skin.GetTextPostfix(unit), text);
}

void tst_CSkin::doubleMultiple_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("base");
    QTest::addColumn<int>("multiple");
    QTest::addColumn<double>("scaled");

    QTest::newRow("1536 / 1024") << 1536.0 << 1024.0 << 1 << 1.5;
    QTest::newRow("1024 stays") << 1024.0 << 1024.0 << 0 << 1024.0;
    QTest::newRow("1024.5") << 1024.5 << 1024.0 << 1 << 1024.5 / 1024.0;
    QTest::newRow("1048576 ends on 1024") << 1048576.0 << 1024.0 << 1 << 1024.0;
    QTest::newRow("1048577") << 1048577.0 << 1024.0 << 2 << 1048577.0 / 1024.0 / 1024.0;
    QTest::newRow("3 GiB") << 3221225472.0 << 1024.0 << 3 << 3.0;
    QTest::newRow("5 TiB, not capped") << 5497558138880.0 << 1024.0 << 4 << 5.0;
    QTest::newRow("1e30, not capped") << 1e30 << 1024.0 << 9 << std::ldexp(1e30, -90);
    QTest::newRow("zero") << 0.0 << 1024.0 << 0 << 0.0;
    QTest::newRow("1023.5") << 1023.5 << 1024.0 << 0 << 1023.5;
    QTest::newRow("negative") << -5000.0 << 1024.0 << 0 << -5000.0;
    QTest::newRow("base 2, threshold still 1024") << 4096.0 << 2.0 << 2 << 1024.0;
    QTest::newRow("base 1000") << 1500.0 << 1000.0 << 1 << 1.5;
    QTest::newRow("base 1000, twice") << 2000000.0 << 1000.0 << 2 << 2.0;
    QTest::newRow("base 1000, 1024000 stops at 1024") << 1024000.0 << 1000.0 << 1 << 1024.0;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 1024.0 << 0
                                  << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("minus infinity") << -std::numeric_limits<double>::infinity() << 1024.0 << 0
                                    << -std::numeric_limits<double>::infinity();
}

void tst_CSkin::doubleMultiple()
{
    QFETCH(double, value);
    QFETCH(double, base);
    QFETCH(int, multiple);
    QFETCH(double, scaled);

    CSkin skin;
    double actual = -123.0;
    QCOMPARE(skin.GetDoubleMultiple(value, base, actual), multiple);
    QCOMPARE(actual, scaled);
}

void tst_CSkin::doubleMultipleUnboundedInput_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("base");

    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("base 1") << 2048.0 << 1.0;
    QTest::newRow("base 0.5") << 1e6 << 0.5;
    QTest::newRow("base 0") << 2048.0 << 0.0;
    QTest::newRow("base -0") << 2048.0 << -0.0;
    QTest::newRow("base -2") << 2048.0 << -2.0;
    QTest::newRow("base not a number") << 2048.0 << nan;
    QTest::newRow("base minus infinity") << 2048.0 << -inf;
    QTest::newRow("base 1, largest double") << std::numeric_limits<double>::max() << 1.0;
    QTest::newRow("infinite value, base 1024") << inf << 1024.0;
    QTest::newRow("infinite value, base 2") << inf << 2.0;
}

void tst_CSkin::doubleMultipleUnboundedInput()
{
    // Input that would never come down to 1024 stays in its unit.
    QFETCH(double, value);
    QFETCH(double, base);

    CSkin skin;
    double actual = -123.0;
    QCOMPARE(skin.GetDoubleMultiple(value, base, actual), 0);
    QCOMPARE(actual, value);
}

// The address is a build setting; the test is built with the same one as the library.
#define ZV_LINK_HEAD "<html><head/><body><p><a href=\"" ZVCORE_COMPANY_URL "\">"
#define ZV_LINK_TAIL "</a></p></body></html>"

void tst_CSkin::linkStr_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<QByteArray>("html");

    QTest::newRow("no colour") << QByteArray("text") << QByteArray()
        << QByteArray(ZV_LINK_HEAD "text" ZV_LINK_TAIL);
    QTest::newRow("hex colour") << QByteArray("text") << QByteArray("#0088ff")
        << QByteArray(ZV_LINK_HEAD
                      "<span style=\" text-decoration: underline; color:#0088ff;\">text</span>"
                      ZV_LINK_TAIL);
    QTest::newRow("rgb colour") << QByteArray("Visit us") << QByteArray("rgb(0, 136, 255)")
        << QByteArray(ZV_LINK_HEAD
                      "<span style=\" text-decoration: underline; color:rgb(0, 136, 255);\">"
                      "Visit us</span>" ZV_LINK_TAIL);
    QTest::newRow("empty text, no colour") << QByteArray() << QByteArray()
        << QByteArray(ZV_LINK_HEAD ZV_LINK_TAIL);
    QTest::newRow("empty text, colour") << QByteArray() << QByteArray("red")
        << QByteArray(ZV_LINK_HEAD
                      "<span style=\" text-decoration: underline; color:red;\"></span>"
                      ZV_LINK_TAIL);
    QTest::newRow("text inserted unchanged") << QByteArray("a & <b>\"x\"</b>") << QByteArray()
        << QByteArray(ZV_LINK_HEAD "a & <b>\"x\"</b>" ZV_LINK_TAIL);
    QTest::newRow("colour inserted unchanged") << QByteArray("t") << QByteArray(" blue ;")
        << QByteArray(ZV_LINK_HEAD
                      "<span style=\" text-decoration: underline; color: blue ;;\">t</span>"
                      ZV_LINK_TAIL);
    QTest::newRow("utf-8 text") << QByteArray("\xc3\xa9t\xc3\xa9") << QByteArray()
        << QByteArray(ZV_LINK_HEAD "\xc3\xa9t\xc3\xa9" ZV_LINK_TAIL);
}

void tst_CSkin::linkStr()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, color);
    QFETCH(QByteArray, html);

    const CSkin skin;
    const std::string actual = skin.GetLinkStr(text.toStdString(), color.toStdString());
    QCOMPARE(QByteArray::fromStdString(actual), html);
}

// A byte array of the whole literal, NUL bytes included.
#define BYTES(literal) QByteArray(literal, int(sizeof(literal)) - 1)

void tst_CSkin::setStyle_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("sheet");

    QTest::newRow("latin-1, cut at NUL")
        << QStringLiteral("file")
        << BYTES("QLabel { font-family: \"Caf\xe9\"; }\0QLabel { color: red; }")
        << QString(QStringLiteral("QLabel { font-family: \"Caf") + QChar(0x00e9)
                   + QStringLiteral("\"; }"));
    QTest::newRow("high latin-1 bytes, no NUL")
        << QStringLiteral("file") << QByteArray("/* \xa9\xff\x80 */\nQWidget { }\n")
        << QString(QStringLiteral("/* ") + QChar(0x00a9) + QChar(0x00ff) + QChar(0x0080)
                   + QStringLiteral(" */\nQWidget { }\n"));
    QTest::newRow("plain text")
        << QStringLiteral("file") << QByteArray("QPushButton#btn_close { border: none; }")
        << QStringLiteral("QPushButton#btn_close { border: none; }");
    QTest::newRow("NUL first") << QStringLiteral("file") << BYTES("\0QWidget { }")
                               << QString();
    QTest::newRow("empty file") << QStringLiteral("file") << QByteArray() << QString();
    QTest::newRow("missing file") << QStringLiteral("missing") << QByteArray() << QString();
    QTest::newRow("directory") << QStringLiteral("directory") << QByteArray() << QString();
}

void tst_CSkin::setStyle()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, content);
    QFETCH(QString, sheet);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QString path = dir.filePath(QStringLiteral("style.qss"));
    if (kind == QLatin1String("file")) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    } else if (kind == QLatin1String("directory")) {
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("style.qss")));
    }

    // A sheet from before, which every call replaces.
    const QString previous = QStringLiteral("QToolTip { color: blue; }");
    qApp->setStyleSheet(previous);
    QCOMPARE(qApp->styleSheet(), previous);

    CSkin::SetStyle(path);
    QCOMPARE(qApp->styleSheet(), sheet);
}

QTEST_MAIN(tst_CSkin)

#include "tst_cskin.moc"
