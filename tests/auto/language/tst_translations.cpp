// Checks the language files of the frame: the compiled catalogues in the build tree, the
// .ts sources they come from, and the sample language list of the example product.
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTranslator>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

#include <memory>

#ifndef ZV_QM_DIR
#error "ZV_QM_DIR must name the folder of the compiled catalogues"
#endif
#ifndef ZV_TS_DIR
#error "ZV_TS_DIR must name the folder of the .ts files"
#endif
#ifndef ZV_SAMPLE_CATALOGUE
#error "ZV_SAMPLE_CATALOGUE must name the sample localconfig.json"
#endif

namespace {

struct Message
{
    const char* context;
    const char* source;
};

// The texts of src/ZVCore/language/frametexts.cpp.
const Message kMessages[] = {
    {"ZVMainWindowTitle", "Feedback"},
    {"ZVDialogTitleBar", "Close"},
    {"ZVDialogTitleBar", "Closes the window"},
    {"ZVDialogTitleBar", "Minimise"},
    {"ZVDialogTitleBar", "Minimises the window"},
    {"ZVDialogTitleBar", "Maximise"},
    {"ZVDialogTitleBar", "Maximises the window"},
    {"ZVMainWindowTitle", "Menu"},
    {"ZVMainWindowTitle", "Minimise"},
    {"ZVMainWindowTitle", "Maximise"},
    {"ZVMainWindowTitle", "Restore"},
    {"ZVMainWindowTitle", "Close"},
    {"ZVMainWindowTitle", "Sends feedback to the makers"},
    {"ZVMainWindowTitle", "Opens the menu"},
    {"ZVMainWindowTitle", "Minimises the window"},
    {"ZVMainWindowTitle", "Maximises the window"},
    {"ZVMainWindowTitle", "Restores the window to its size"},
    {"ZVMainWindowTitle", "Closes the window"},
    {"ZVCoreWindow", "&Restore"},
    {"ZVCoreWindow", "&Move"},
    {"ZVCoreWindow", "&Size"},
    {"ZVCoreWindow", "Mi&nimise"},
    {"ZVCoreWindow", "Ma&ximise"},
    {"ZVCoreWindow", "&Close"},
    {"LanguageSelectDialog", "Please select a language"},
    {"LanguageSelectDialog", "Cancel"},
    {"LanguageSelectDialog", "OK"},
    {"LanguageSelectDialog", "Notice:"},
    {"LanguageSelectDialog", "The program will restart in order to apply the changes."},
    {"ZVAboutDialog", "About Us"},
    {"ZVAboutDialog", "Version: "},
    {"ZVAboutDialog", "Official Website"},
    {"ZVAboutDialog", "Contact Support"},
};

// Texts that no language may leave in English.
const Message kLongSentences[] = {
    {"LanguageSelectDialog", "Please select a language"},
    {"LanguageSelectDialog", "The program will restart in order to apply the changes."},
};

struct Language
{
    const char* name;   // internal name: ZVCore_<name>.qm, "Name" in the language list
    const char* locale; // a locale of the language
    const char* show;   // "Show" in the language list
    const char* apple;  // "AppleLanguage" in the language list
    const char* localeName; // "LocaleName" in the language list
};

// In the order of the sample language list.
const Language kLanguages[] = {
    {"English", "en", "English", "en", ""},
    {"ChineseSimplified", "zh_CN", "\u7b80\u4f53\u4e2d\u6587", "zh-Hans", "zh_CN,zh_SG"},
    {"ChineseTraditional", "zh_TW", "\u7e41\u9ad4\u4e2d\u6587", "zh-Hant", "zh_TW,zh_HK,zh_MO"},
    {"Japanese", "ja", "\u65e5\u672c\u8a9e", "ja", ""},
    {"Korean", "ko", "\ud55c\uad6d\uc5b4", "ko", ""},
    {"German", "de", "Deutsch", "de", ""},
    {"French", "fr", "Fran\u00e7ais", "fr", ""},
    {"Spanish", "es", "Espa\u00f1ol", "es", ""},
    {"Portuguese", "pt", "Portugu\u00eas", "pt", ""},
    {"Russian", "ru", "\u0420\u0443\u0441\u0441\u043a\u0438\u0439", "ru", ""},
    {"Arabic", "ar", "\u0627\u0644\u0639\u0631\u0628\u064a\u0629", "ar", ""},
};

const char* const kRecordKeys[] = {"Name", "Show", "UrlFileName", "LocaleLanguage", "LocaleName", "AppleLanguage"};

QString qmPath(const char* name)
{
    return QStringLiteral(ZV_QM_DIR "/ZVCore_%1.qm").arg(QLatin1String(name));
}

QString tsPath(const char* name)
{
    return QStringLiteral(ZV_TS_DIR "/ZVCore_%1.ts").arg(QLatin1String(name));
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

QJsonArray sampleRecords()
{
    const QJsonDocument doc = QJsonDocument::fromJson(readAll(QStringLiteral(ZV_SAMPLE_CATALOGUE)));
    return doc.object().value(QStringLiteral("LanguageInfoArray")).toArray();
}

// True when one of the comma-separated fragments is part of the locale name.
bool localeNameMatches(const QString& fragments, const QString& localeName)
{
    const QStringList parts = fragments.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        if (localeName.contains(part.trimmed()))
            return true;
    }
    return false;
}

} // namespace

class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void catalogueLoads_data()
    {
        QTest::addColumn<QString>("name");
        for (const Language& l : kLanguages)
            QTest::newRow(l.name) << QString::fromLatin1(l.name);
    }

    void catalogueLoads()
    {
        QFETCH(QString, name);
        const QString path = qmPath(name.toLatin1().constData());
        QVERIFY2(QFile::exists(path), qPrintable(path));
        QTranslator translator;
        QVERIFY2(translator.load(path), qPrintable(path));
        QVERIFY(!translator.isEmpty());
    }

    void everyTextIsTranslated_data()
    {
        QTest::addColumn<QString>("name");
        for (const Language& l : kLanguages)
            QTest::newRow(l.name) << QString::fromLatin1(l.name);
    }

    void everyTextIsTranslated()
    {
        QFETCH(QString, name);
        QTranslator translator;
        QVERIFY(translator.load(qmPath(name.toLatin1().constData())));
        const bool english = name == QLatin1String("English");
        for (const Message& m : kMessages) {
            const QString translation = translator.translate(m.context, m.source);
            const QByteArray where = QByteArray(m.context) + " / \"" + m.source + '"';
            QVERIFY2(!translation.isEmpty(), where.constData());
            if (english)
                QCOMPARE(translation, QString::fromLatin1(m.source));
        }
        if (!english) {
            for (const Message& m : kLongSentences) {
                const QString translation = translator.translate(m.context, m.source);
                QVERIFY2(translation != QLatin1String(m.source), m.source);
            }
        }
    }

    void chosenTranslations_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("expected");

        auto row = [](const char* tag, const char* name, const char* context, const char* source,
                      const QString& expected) {
            QTest::newRow(tag) << QString::fromLatin1(name) << QString::fromLatin1(context)
                               << QString::fromLatin1(source) << expected;
        };
        row("English Cancel", "English", "LanguageSelectDialog", "Cancel", QStringLiteral("Cancel"));
        row("German OK", "German", "LanguageSelectDialog", "OK", QStringLiteral("OK"));
        row("German Cancel", "German", "LanguageSelectDialog", "Cancel", QStringLiteral("Abbrechen"));
        row("German Version", "German", "ZVAboutDialog", "Version: ", QStringLiteral("Version: "));
        row("French Cancel", "French", "LanguageSelectDialog", "Cancel", QStringLiteral("Annuler"));
        row("Spanish OK", "Spanish", "LanguageSelectDialog", "OK", QStringLiteral("Aceptar"));
        row("Portuguese About Us", "Portuguese", "ZVAboutDialog", "About Us", QStringLiteral("Sobre n\u00f3s"));
        row("Simplified Cancel", "ChineseSimplified", "LanguageSelectDialog", "Cancel",
            QStringLiteral("\u53d6\u6d88"));
        row("Simplified OK", "ChineseSimplified", "LanguageSelectDialog", "OK", QStringLiteral("\u786e\u5b9a"));
        row("Simplified Version", "ChineseSimplified", "ZVAboutDialog", "Version: ",
            QStringLiteral("\u7248\u672c\uff1a"));
        row("Simplified select", "ChineseSimplified", "LanguageSelectDialog", "Please select a language",
            QStringLiteral("\u8bf7\u9009\u62e9\u8bed\u8a00"));
        row("Traditional select", "ChineseTraditional", "LanguageSelectDialog", "Please select a language",
            QStringLiteral("\u8acb\u9078\u64c7\u8a9e\u8a00"));
        row("Traditional OK", "ChineseTraditional", "LanguageSelectDialog", "OK", QStringLiteral("\u78ba\u5b9a"));
        row("Japanese Cancel", "Japanese", "LanguageSelectDialog", "Cancel",
            QStringLiteral("\u30ad\u30e3\u30f3\u30bb\u30eb"));
        row("Korean Cancel", "Korean", "LanguageSelectDialog", "Cancel", QStringLiteral("\ucde8\uc18c"));
        row("Russian Cancel", "Russian", "LanguageSelectDialog", "Cancel",
            QStringLiteral("\u041e\u0442\u043c\u0435\u043d\u0430"));
        row("Arabic Cancel", "Arabic", "LanguageSelectDialog", "Cancel",
            QStringLiteral("\u0625\u0644\u063a\u0627\u0621"));
        row("Arabic OK", "Arabic", "LanguageSelectDialog", "OK",
            QStringLiteral("\u0645\u0648\u0627\u0641\u0642"));
    }

    void chosenTranslations()
    {
        QFETCH(QString, name);
        QFETCH(QString, context);
        QFETCH(QString, source);
        QFETCH(QString, expected);
        QTranslator translator;
        QVERIFY(translator.load(qmPath(name.toLatin1().constData())));
        QCOMPARE(translator.translate(context.toLatin1().constData(), source.toLatin1().constData()), expected);
    }

    void tsFilesAreComplete_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("locale");
        for (const Language& l : kLanguages)
            QTest::newRow(l.name) << QString::fromLatin1(l.name) << QString::fromLatin1(l.locale);
    }

    void tsFilesAreComplete()
    {
        QFETCH(QString, name);
        QFETCH(QString, locale);
        const QByteArray text = readAll(tsPath(name.toLatin1().constData()));
        QVERIFY2(!text.isEmpty(), qPrintable(tsPath(name.toLatin1().constData())));
        QVERIFY(!text.contains("type=\"unfinished\""));
        QVERIFY(!text.contains("type=\"vanished\""));
        QVERIFY(!text.contains("type=\"obsolete\""));

        // Every text is in the file, under its context, with a translation.
        QXmlStreamReader xml(text);
        QString language;
        QString context;
        QString source;
        QSet<QString> translated;
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement())
                continue;
            if (xml.name() == QLatin1String("TS")) {
                language = xml.attributes().value(QLatin1String("language")).toString();
            } else if (xml.name() == QLatin1String("name")) {
                context = xml.readElementText();
            } else if (xml.name() == QLatin1String("source")) {
                source = xml.readElementText();
            } else if (xml.name() == QLatin1String("translation")) {
                if (!xml.readElementText().isEmpty())
                    translated.insert(context + QLatin1Char('\n') + source);
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(language, locale);
        for (const Message& m : kMessages) {
            const QString key = QLatin1String(m.context) + QLatin1Char('\n') + QLatin1String(m.source);
            QVERIFY2(translated.contains(key), m.source);
        }
    }

    void sampleCatalogueRecords()
    {
        const QByteArray raw = readAll(QStringLiteral(ZV_SAMPLE_CATALOGUE));
        QJsonParseError error;
        const QJsonDocument doc = QJsonDocument::fromJson(raw, &error);
        QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
        QVERIFY(doc.isObject());
        QCOMPARE(doc.object().keys(), QStringList{QStringLiteral("LanguageInfoArray")});

        const QJsonArray records = sampleRecords();
        QCOMPARE(records.size(), 11);
        QStringList expectedKeys;
        for (const char* key : kRecordKeys)
            expectedKeys << QLatin1String(key);
        QStringList sortedKeys = expectedKeys;
        sortedKeys.sort();

        for (int i = 0; i < records.size(); ++i) {
            const Language& l = kLanguages[i];
            QVERIFY(records.at(i).isObject());
            const QJsonObject r = records.at(i).toObject();
            QCOMPARE(r.keys(), sortedKeys);
            for (const char* key : kRecordKeys)
                QVERIFY2(r.value(QLatin1String(key)).isString(), key);
            const QString name = QLatin1String(l.name);
            QCOMPARE(r.value(QStringLiteral("Name")).toString(), name);
            QCOMPARE(r.value(QStringLiteral("Show")).toString(), QString::fromUtf8(l.show));
            QCOMPARE(r.value(QStringLiteral("UrlFileName")).toString(), name + QStringLiteral("_URL.xml"));
            QCOMPARE(r.value(QStringLiteral("LocaleName")).toString(), QLatin1String(l.localeName));
            QCOMPARE(r.value(QStringLiteral("AppleLanguage")).toString(), QLatin1String(l.apple));
        }

        // The keys of every record are written in one order.
        QStringList keysInText;
        QRegularExpression keyPattern(QStringLiteral("\"(\\w+)\"\\s*:"));
        auto it = keyPattern.globalMatch(QString::fromUtf8(raw));
        while (it.hasNext()) {
            const QString key = it.next().captured(1);
            if (key != QLatin1String("LanguageInfoArray"))
                keysInText << key;
        }
        QStringList expectedSequence;
        for (int i = 0; i < 11; ++i)
            expectedSequence << expectedKeys;
        QCOMPARE(keysInText, expectedSequence);
    }

    void sampleCatalogueLocaleLanguage_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("locale");
        for (int i = 0; i < 11; ++i)
            QTest::newRow(kLanguages[i].name) << i << QString::fromLatin1(kLanguages[i].locale);
    }

    void sampleCatalogueLocaleLanguage()
    {
        QFETCH(int, index);
        QFETCH(QString, locale);
        const QJsonArray records = sampleRecords();
        QVERIFY(index < records.size());
        const QString value = records.at(index).toObject().value(QStringLiteral("LocaleLanguage")).toString();
        QCOMPARE(value, QLocale::languageToString(QLocale(locale).language()));
    }

    void sampleCatalogueLocaleLanguageNames()
    {
        const QJsonArray records = sampleRecords();
        QCOMPARE(records.size(), 11);
        const QStringList expected = {
            QStringLiteral("English"), QStringLiteral("Chinese"), QStringLiteral("Chinese"),
            QStringLiteral("Japanese"), QStringLiteral("Korean"), QStringLiteral("German"),
            QStringLiteral("French"), QStringLiteral("Spanish"), QStringLiteral("Portuguese"),
            QStringLiteral("Russian"), QStringLiteral("Arabic")};
        for (int i = 0; i < records.size(); ++i)
            QCOMPARE(records.at(i).toObject().value(QStringLiteral("LocaleLanguage")).toString(), expected.at(i));
    }

    void sampleCatalogueLocaleNameFragments_data()
    {
        QTest::addColumn<QString>("systemLocale");
        QTest::addColumn<QString>("onlyMatch");
        QTest::newRow("zh_TW") << QStringLiteral("zh_TW") << QStringLiteral("ChineseTraditional");
        QTest::newRow("zh_HK") << QStringLiteral("zh_HK") << QStringLiteral("ChineseTraditional");
        QTest::newRow("zh_MO") << QStringLiteral("zh_MO") << QStringLiteral("ChineseTraditional");
        QTest::newRow("zh_CN") << QStringLiteral("zh_CN") << QStringLiteral("ChineseSimplified");
        QTest::newRow("zh_SG") << QStringLiteral("zh_SG") << QStringLiteral("ChineseSimplified");
        QTest::newRow("de_DE") << QStringLiteral("de_DE") << QString();
    }

    void sampleCatalogueLocaleNameFragments()
    {
        QFETCH(QString, systemLocale);
        QFETCH(QString, onlyMatch);
        const QJsonArray records = sampleRecords();
        QCOMPARE(records.size(), 11);
        QStringList matching;
        for (const QJsonValue& v : records) {
            const QJsonObject r = v.toObject();
            if (localeNameMatches(r.value(QStringLiteral("LocaleName")).toString(), systemLocale))
                matching << r.value(QStringLiteral("Name")).toString();
        }
        QCOMPARE(matching, onlyMatch.isEmpty() ? QStringList() : QStringList{onlyMatch});
    }
};

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
