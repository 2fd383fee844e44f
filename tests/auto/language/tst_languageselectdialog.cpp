// The language picker, each scenario in a product folder and a process of its own: it
// reads the process-wide catalogue and language manager and the files beside the program.
#include "probe.h"

#include <QtTest/QtTest>

namespace {

// English, a language the frame has no translation for, German and Traditional Chinese.
const QByteArray kCatalogue = R"json({"LanguageInfoArray":[
 {"Name":"English","Show":"English","UrlFileName":"English_URL.xml","LocaleLanguage":"English","LocaleName":""},
 {"Name":"Klingon","Show":"tlhIngan Hol","UrlFileName":"","LocaleLanguage":"","LocaleName":""},
 {"Name":"German","Show":"Deutsch","UrlFileName":"German_URL.xml","LocaleLanguage":"German","LocaleName":""},
 {"Name":"ChineseTraditional","Show":"繁體中文","UrlFileName":"","LocaleLanguage":"Chinese","LocaleName":"zh_TW,zh_HK"}
]})json";

const QStringList kOfferedNames{QStringLiteral("English"), QStringLiteral("German"), QStringLiteral("ChineseTraditional")};
const QStringList kOfferedTexts{QStringLiteral("English"), QStringLiteral("Deutsch"), QStringLiteral("繁體中文")};

const QString kEnglishNotice = QStringLiteral("Notice: The program will restart in order to apply the changes.");
const QString kGermanNotice = QStringLiteral("Hinweis: Das Programm wird neu gestartet, um die Änderungen zu übernehmen.");

QString command(const char* text)
{
    return QString::fromUtf8(text);
}

// Copies the frame's compiled translations of \a names into the product folder.
bool installTranslations(const ProbeFolder& product, const QStringList& names)
{
    QDir().mkpath(product.file(QStringLiteral("language/qm/ZVCore")));
    for (const QString& name : names) {
        const QString file = QStringLiteral("ZVCore_") + name + QStringLiteral(".qm");
        if (!QFile::copy(QStringLiteral(ZV_QM_DIR "/") + file, product.file(QStringLiteral("language/qm/ZVCore/") + file)))
            return false;
    }
    return true;
}

// A product folder with the catalogue and the translations of the three offered
// languages; Klingon has none.
bool prepare(ProbeFolder& product)
{
    return product.isValid() && product.write(QStringLiteral("language/main/localconfig.json"), kCatalogue)
        && installTranslations(product, kOfferedNames);
}

QStringList strings(const QJsonValue& value)
{
    QStringList list;
    for (const QJsonValue& v : value.toArray())
        list.append(v.toString());
    return list;
}

QSize size(const QJsonValue& value)
{
    const QJsonArray a = value.toArray();
    return a.size() == 2 ? QSize(a.at(0).toInt(), a.at(1).toInt()) : QSize(-1, -1);
}

QList<int> ints(const QJsonValue& value)
{
    QList<int> list;
    for (const QJsonValue& v : value.toArray())
        list.append(v.toInt());
    return list;
}

QList<QJsonObject> reportsOf(const ProbeRun& run, const QString& cmd)
{
    QList<QJsonObject> list;
    for (const QJsonObject& r : run.reports) {
        if (r.value(QStringLiteral("cmd")).toString() == cmd)
            list.append(r);
    }
    return list;
}

QPoint point(const QJsonValue& value)
{
    const QJsonArray a = value.toArray();
    return QPoint(a.at(0).toInt(), a.at(1).toInt());
}

QJsonObject layoutItem(const QJsonObject& layout, int index)
{
    return layout.value(QStringLiteral("items")).toArray().at(index).toObject();
}

} // namespace

class tst_LanguageSelectDialog : public QObject
{
    Q_OBJECT

private:
    // Runs the probe and returns the report of the last "langdialog:report".
    static QJsonObject dialogReport(const ProbeFolder& product, const QStringList& commands, ProbeRun* out = nullptr)
    {
        const ProbeRun run = product.run(QStringList{QStringLiteral("loadcatalogue")} + commands);
        if (out)
            *out = run;
        const QList<QJsonObject> reports = reportsOf(run, QStringLiteral("langdialog"));
        if (run.exitCode != 0 || reports.isEmpty()) {
            qWarning().noquote() << "probe failed:" << run.exitCode << run.log.join(QLatin1Char('\n'));
            return QJsonObject();
        }
        return reports.last();
    }

private slots:
    // --- offered languages -----------------------------------------------------------

    void offersCatalogueLanguagesWithAFrameTranslation_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("all three, in catalogue order") << kOfferedNames << kOfferedNames << kOfferedTexts;
        QTest::newRow("translations installed in another order")
            << QStringList{QStringLiteral("ChineseTraditional"), QStringLiteral("English")}
            << QStringList{QStringLiteral("English"), QStringLiteral("ChineseTraditional")}
            << QStringList{QStringLiteral("English"), QStringLiteral("繁體中文")};
        QTest::newRow("a translation outside the catalogue is not offered")
            << QStringList{QStringLiteral("German"), QStringLiteral("French")} << QStringList{QStringLiteral("German")}
            << QStringList{QStringLiteral("Deutsch")};
        QTest::newRow("no translations") << QStringList() << QStringList() << QStringList();
    }

    void offersCatalogueLanguagesWithAFrameTranslation()
    {
        QFETCH(QStringList, installed);
        QFETCH(QStringList, names);
        QFETCH(QStringList, texts);
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), kCatalogue));
        QVERIFY(installTranslations(product, installed));
        // Klingon's file lies in the other folder, not in ZVCore's.
        QVERIFY(product.write(QStringLiteral("language/qm/Klingon.qm"), "not the frame's"));

        const QJsonObject r = dialogReport(product, {command("langdialog:new"), command("langdialog:report")});
        QCOMPARE(strings(r.value(QStringLiteral("names"))), names);
        QCOMPARE(strings(r.value(QStringLiteral("items"))), texts);
        QCOMPARE(r.value(QStringLiteral("comboClass")).toString(), QStringLiteral("ZVStyleComboBox"));
    }

    void currentLanguageIsSelected_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("index");
        QTest::newRow("English") << "English" << 0;
        QTest::newRow("German") << "German" << 1;
        QTest::newRow("ChineseTraditional") << "ChineseTraditional" << 2;
        QTest::newRow("Klingon, not offered") << "Klingon" << 0;
        QTest::newRow("case differs") << "german" << 0;
        QTest::newRow("not in the catalogue") << "Elvish" << 0;
    }

    void currentLanguageIsSelected()
    {
        QFETCH(QString, language);
        QFETCH(int, index);
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = dialogReport(product, {QStringLiteral("prop:ForceLanguage=string:") + language,
                                                     command("langdialog:new"), command("langdialog:report")});
        QCOMPARE(r.value(QStringLiteral("currentIndex")).toInt(), index);
        QCOMPARE(r.value(QStringLiteral("language")).toString(), language);
    }

    void popupIsFramelessAndTranslucent()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = dialogReport(product, {command("langdialog:new"), command("langdialog:report")});
        QVERIFY(r.value(QStringLiteral("popupFrameless")).toBool());
        QVERIFY(r.value(QStringLiteral("popupTranslucent")).toBool());
    }

    // --- confirming ------------------------------------------------------------------

    void confirmingANewLanguageSwitchesAndPostsOnce_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<int>("select");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("selectText");
        QTest::newRow("German to English") << "German" << 0 << "English" << "Please select a language";
        QTest::newRow("English to ChineseTraditional") << "English" << 2 << "ChineseTraditional" << "請選擇語言";
        QTest::newRow("not offered, to German") << "Klingon" << 1 << "German" << "Bitte wählen Sie eine Sprache";
    }

    void confirmingANewLanguageSwitchesAndPostsOnce()
    {
        QFETCH(QString, from);
        QFETCH(int, select);
        QFETCH(QString, to);
        QFETCH(QString, selectText);
        ProbeFolder product;
        QVERIFY(prepare(product));
        QVERIFY(product.write(QStringLiteral("language/language"), from.toUtf8()));
        ProbeRun run;
        const QJsonObject r = dialogReport(product,
                                           {command("langdialog:new"), command("langdialog:show"),
                                            QStringLiteral("langdialog:select=%1").arg(select), command("langdialog:ok"),
                                            command("langdialog:report"), command("wait:50"), command("langdialog:report")},
                                           &run);
        const QList<QJsonObject> reports = reportsOf(run, QStringLiteral("langdialog"));
        QCOMPARE(reports.size(), 2);
        // Posted, not sent: nothing has arrived when the click returns; it arrives once
        // the queue runs, and only once.
        QCOMPARE(reports.at(0).value(QStringLiteral("events1002BeforeDelivery")).toInt(), 0);
        QCOMPARE(reports.at(0).value(QStringLiteral("events1002")).toInt(), 1);
        QCOMPARE(r.value(QStringLiteral("events1002")).toInt(), 1);
        QCOMPARE(r.value(QStringLiteral("language")).toString(), to);
        QCOMPARE(r.value(QStringLiteral("saved")).toString(), to);
        QCOMPARE(r.value(QStringLiteral("currentIndex")).toInt(), select);
        QVERIFY(!r.value(QStringLiteral("visible")).toBool());
        // The switch retranslates the dialog at once.
        QCOMPARE(r.value(QStringLiteral("select")).toObject().value(QStringLiteral("text")).toString(), selectText);
        QVERIFY(run.logged(QStringLiteral("ZVCore: Set Language->") + from));
    }

    void confirmingWithoutChangeOnlyCloses_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("index");
        QTest::newRow("German stays selected") << "German" << 1;
        // Index 0 is the stored index when the language in force is not offered, so
        // confirming it switches nothing either.
        QTest::newRow("not offered, index 0") << "Klingon" << 0;
        QTest::newRow("another case, index 0") << "english" << 0;
    }

    void confirmingWithoutChangeOnlyCloses()
    {
        QFETCH(QString, language);
        QFETCH(int, index);
        ProbeFolder product;
        QVERIFY(prepare(product));
        QVERIFY(product.write(QStringLiteral("language/language"), language.toUtf8()));
        ProbeRun run;
        const QJsonObject r = dialogReport(product,
                                           {command("langdialog:new"), command("langdialog:show"),
                                            QStringLiteral("langdialog:select=%1").arg(index), command("langdialog:ok"),
                                            command("wait:50"), command("langdialog:report")},
                                           &run);
        QCOMPARE(r.value(QStringLiteral("events1002")).toInt(), 0);
        QCOMPARE(r.value(QStringLiteral("language")).toString(), language);
        QCOMPARE(r.value(QStringLiteral("saved")).toString(), language);
        QCOMPARE(r.value(QStringLiteral("currentIndex")).toInt(), index);
        QVERIFY(!r.value(QStringLiteral("visible")).toBool());
        // The language was set once, at start-up, and not again.
        QCOMPARE(run.log.count(QStringLiteral("ZVCore: Set Language->") + language), 1);
    }

    void selectingBackAndForthThenConfirmingTheStoredIndexDoesNothing()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        QVERIFY(product.write(QStringLiteral("language/language"), "German"));
        const QJsonObject r = dialogReport(product, {command("langdialog:new"), command("langdialog:show"),
                                                     command("langdialog:select=2"), command("langdialog:select=1"),
                                                     command("langdialog:ok"), command("langdialog:report")});
        QCOMPARE(r.value(QStringLiteral("events1002")).toInt(), 0);
        QCOMPARE(r.value(QStringLiteral("language")).toString(), QStringLiteral("German"));
    }

    void leavingWithoutOkSwitchesNothing_data()
    {
        QTest::addColumn<QString>("leave");
        QTest::newRow("Cancel") << "langdialog:cancel";
        QTest::newRow("title bar close") << "langdialog:titleclose";
    }

    void leavingWithoutOkSwitchesNothing()
    {
        QFETCH(QString, leave);
        ProbeFolder product;
        QVERIFY(prepare(product));
        QVERIFY(product.write(QStringLiteral("language/language"), "German"));
        const QJsonObject r = dialogReport(product, {command("langdialog:new"), command("langdialog:show"),
                                                     command("langdialog:select=0"), leave, command("wait:50"),
                                                     command("langdialog:report")});
        QVERIFY(!r.value(QStringLiteral("visible")).toBool());
        QCOMPARE(r.value(QStringLiteral("events1002")).toInt(), 0);
        QCOMPARE(r.value(QStringLiteral("language")).toString(), QStringLiteral("German"));
        QCOMPARE(r.value(QStringLiteral("saved")).toString(), QStringLiteral("German"));
    }

    void modalRunEndsWithOk()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        QVERIFY(product.write(QStringLiteral("language/language"), "German"));
        ProbeRun run;
        const QJsonObject r = dialogReport(product, {command("langdialog:new"), command("langdialog:exec=2"),
                                                     command("langdialog:report")},
                                           &run);
        const QJsonObject e = run.report(QStringLiteral("langdialog:exec"));
        QVERIFY(e.value(QStringLiteral("wasModal")).toBool());
        // Closing, not accepting: exec() reports QDialog::Rejected.
        QCOMPARE(e.value(QStringLiteral("result")).toInt(), 0);
        QVERIFY(!e.value(QStringLiteral("visible")).toBool());
        QCOMPARE(r.value(QStringLiteral("events1002")).toInt(), 1);
        QCOMPARE(r.value(QStringLiteral("language")).toString(), QStringLiteral("ChineseTraditional"));
    }

    // --- form ------------------------------------------------------------------------

    void formAsBuilt()
    {
        // As constructed, before anything polished it.
        ProbeFolder product;
        QVERIFY(prepare(product));
        const ProbeRun run = product.run({command("loadcatalogue"), command("langdialog:new"), command("langdialog:peek")});
        const QJsonObject r = run.report(QStringLiteral("langdialog"));
        QVERIFY(!r.isEmpty());

        QCOMPARE(size(r.value(QStringLiteral("minimumSize"))), QSize(440, 176));
        QCOMPARE(size(r.value(QStringLiteral("maximumSize"))), QSize(440, 214));

        const QJsonObject layout = r.value(QStringLiteral("layout")).toObject();
        QCOMPARE(layout.value(QStringLiteral("spacing")).toInt(), 0);
        QCOMPARE(ints(layout.value(QStringLiteral("margins"))), (QList<int>{5, 5, 5, 5}));
        QCOMPARE(layout.value(QStringLiteral("items")).toArray().size(), 2);
        QCOMPARE(layoutItem(layout, 0).value(QStringLiteral("class")).toString(), QStringLiteral("ZVDialogTitleBar"));
        QCOMPARE(layoutItem(layout, 1).value(QStringLiteral("widget")).toString(), QStringLiteral("background_widget"));

        const QJsonObject title = r.value(QStringLiteral("title")).toObject();
        QCOMPARE(title.value(QStringLiteral("minimumHeight")).toInt(), 22);
        QCOMPARE(title.value(QStringLiteral("maximumHeight")).toInt(), 22);
        QVERIFY(!title.value(QStringLiteral("dragsDialog")).toBool());

        const QJsonObject background = r.value(QStringLiteral("background")).toObject();
        QCOMPARE(size(background.value(QStringLiteral("minimumSize"))), QSize(430, 100));
        QCOMPARE(size(background.value(QStringLiteral("maximumSize"))), QSize(430, 182));
        // The radius style sheet waits for the first polish.
        QCOMPARE(background.value(QStringLiteral("styleSheet")).toString(), QString());

        const QJsonObject content = background.value(QStringLiteral("layout")).toObject();
        QCOMPARE(content.value(QStringLiteral("spacing")).toInt(), 0);
        QCOMPARE(ints(content.value(QStringLiteral("margins"))), (QList<int>{22, 0, 22, 22}));
        QCOMPARE(content.value(QStringLiteral("items")).toArray().size(), 5);
        QCOMPARE(layoutItem(content, 0).value(QStringLiteral("widget")).toString(),
                 QStringLiteral("Core_language_notice_label"));
        QCOMPARE(layoutItem(content, 1).value(QStringLiteral("widget")).toString(),
                 QStringLiteral("Core_language_notice_spacer"));
        QCOMPARE(ints(r.value(QStringLiteral("spacerHeight"))), (QList<int>{10, 10}));

        const QJsonObject selectRow = layoutItem(content, 2).value(QStringLiteral("layout")).toObject();
        QCOMPARE(selectRow.value(QStringLiteral("spacing")).toInt(), 14);
        QCOMPARE(selectRow.value(QStringLiteral("items")).toArray().size(), 2);
        QCOMPARE(layoutItem(selectRow, 0).value(QStringLiteral("widget")).toString(),
                 QStringLiteral("Core_language_select_label"));
        QCOMPARE(layoutItem(selectRow, 1).value(QStringLiteral("class")).toString(), QStringLiteral("ZVStyleComboBox"));

        const QJsonObject vSpacer = layoutItem(content, 3);
        QCOMPARE(ints(vSpacer.value(QStringLiteral("spacer"))), (QList<int>{20, 40}));
        QCOMPARE(vSpacer.value(QStringLiteral("vPolicy")).toInt(), int(QSizePolicy::Expanding));

        const QJsonObject buttonRow = layoutItem(content, 4).value(QStringLiteral("layout")).toObject();
        QCOMPARE(buttonRow.value(QStringLiteral("spacing")).toInt(), 14);
        QCOMPARE(buttonRow.value(QStringLiteral("items")).toArray().size(), 3);
        const QJsonObject hSpacer = layoutItem(buttonRow, 0);
        QCOMPARE(ints(hSpacer.value(QStringLiteral("spacer"))), (QList<int>{40, 20}));
        QCOMPARE(hSpacer.value(QStringLiteral("hPolicy")).toInt(), int(QSizePolicy::Expanding));
        QCOMPARE(layoutItem(buttonRow, 1).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_language_cancel"));
        QCOMPARE(layoutItem(buttonRow, 2).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_language_ok"));
        QCOMPARE(r.value(QStringLiteral("okClass")).toString(), QStringLiteral("ZVStyleButton"));
        QVERIFY(r.value(QStringLiteral("buttonsFlat")).toBool());
        for (const QJsonValue& s : r.value(QStringLiteral("buttonSizes")).toArray())
            QCOMPARE(size(s), QSize(120, 30));

        const QJsonObject notice = r.value(QStringLiteral("notice")).toObject();
        QCOMPARE(notice.value(QStringLiteral("alignment")).toInt(), int(Qt::AlignLeft | Qt::AlignTop));
        QVERIFY(notice.value(QStringLiteral("wordWrap")).toBool());
    }

    void firstPolishSizesByNotice_data()
    {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("bottomMargin");
        QTest::addColumn<int>("titleHeight");
        QTest::addColumn<bool>("noticeShown");
        QTest::newRow("with notice") << QStringList{command("langdialog:restart=1")} << QSize(440, 214) << 22 << 22 << true;
        QTest::newRow("without notice") << QStringList{command("langdialog:restart=0")} << QSize(440, 176) << 32 << 32 << false;
        QTest::newRow("default, as the title bar opens it") << QStringList() << QSize(440, 176) << 32 << 32 << false;
        QTest::newRow("last call wins") << QStringList{command("langdialog:restart=0"), command("langdialog:restart=1")}
                                        << QSize(440, 214) << 22 << 22 << true;
    }

    void firstPolishSizesByNotice()
    {
        QFETCH(QStringList, setup);
        QFETCH(QSize, size);
        QFETCH(int, bottomMargin);
        QFETCH(int, titleHeight);
        QFETCH(bool, noticeShown);
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = dialogReport(product, QStringList{command("langdialog:new")} + setup
                                                        + QStringList{command("langdialog:show"), command("langdialog:report")});
        QCOMPARE(::size(r.value(QStringLiteral("size"))), size);
        QCOMPARE(::size(r.value(QStringLiteral("minimumSize"))), size);
        QCOMPARE(::size(r.value(QStringLiteral("maximumSize"))), size);
        const QJsonObject content = r.value(QStringLiteral("background")).toObject().value(QStringLiteral("layout")).toObject();
        QCOMPARE(ints(content.value(QStringLiteral("margins"))), (QList<int>{22, 0, 22, bottomMargin}));
        const QJsonObject title = r.value(QStringLiteral("title")).toObject();
        QCOMPARE(title.value(QStringLiteral("minimumHeight")).toInt(), titleHeight);
        QCOMPARE(title.value(QStringLiteral("maximumHeight")).toInt(), titleHeight);
        QCOMPARE(!r.value(QStringLiteral("notice")).toObject().value(QStringLiteral("hidden")).toBool(), noticeShown);
        QCOMPARE(!r.value(QStringLiteral("spacerHidden")).toBool(), noticeShown);
    }

    void laterPolishChangesNothing_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("then");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("titleHeight");
        QTest::addColumn<bool>("noticeShown");
        QTest::newRow("notice asked for too late") << "0" << "1" << QSize(440, 176) << 32 << false;
        QTest::newRow("notice withdrawn too late") << "1" << "0" << QSize(440, 214) << 22 << true;
    }

    void laterPolishChangesNothing()
    {
        QFETCH(QString, first);
        QFETCH(QString, then);
        QFETCH(QSize, size);
        QFETCH(int, titleHeight);
        QFETCH(bool, noticeShown);
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = dialogReport(product, {command("langdialog:new"), QStringLiteral("langdialog:restart=") + first,
                                                     command("langdialog:show"), QStringLiteral("langdialog:restart=") + then,
                                                     command("prop:dlgRadius=int:9"), command("langdialog:polish"),
                                                     command("langdialog:report")});
        QCOMPARE(::size(r.value(QStringLiteral("size"))), size);
        QCOMPARE(r.value(QStringLiteral("title")).toObject().value(QStringLiteral("maximumHeight")).toInt(), titleHeight);
        QCOMPARE(!r.value(QStringLiteral("notice")).toObject().value(QStringLiteral("hidden")).toBool(), noticeShown);
        QCOMPARE(r.value(QStringLiteral("background")).toObject().value(QStringLiteral("styleSheet")).toString(),
                 QStringLiteral("QWidget#background_widget { border-bottom-left-radius: 0px;border-bottom-right-radius: 0px; }"));
    }

    void radiusStyleSheet_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("styleSheet");
        QTest::newRow("absent") << QString()
                                << "QWidget#background_widget { border-bottom-left-radius: 0px;border-bottom-right-radius: 0px; }";
        QTest::newRow("6") << "prop:dlgRadius=int:6"
                           << "QWidget#background_widget { border-bottom-left-radius: 6px;border-bottom-right-radius: 6px; }";
        QTest::newRow("not a number") << "prop:dlgRadius=string:wide"
                                      << "QWidget#background_widget { border-bottom-left-radius: 0px;border-bottom-right-radius: 0px; }";
    }

    void radiusStyleSheet()
    {
        QFETCH(QString, property);
        QFETCH(QString, styleSheet);
        ProbeFolder product;
        QVERIFY(prepare(product));
        QStringList commands{command("langdialog:new"), command("langdialog:show"), command("langdialog:report")};
        if (!property.isEmpty())
            commands.prepend(property);
        const QJsonObject r = dialogReport(product, commands);
        QCOMPARE(r.value(QStringLiteral("background")).toObject().value(QStringLiteral("styleSheet")).toString(), styleSheet);
    }

    void titleBarDragsTheDialogWithoutWindowButtons()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = dialogReport(product, {command("langdialog:new"), command("langdialog:show"),
                                                     command("langdialog:report")});
        const QJsonObject title = r.value(QStringLiteral("title")).toObject();
        QCOMPARE(title.value(QStringLiteral("class")).toString(), QStringLiteral("ZVDialogTitleBar"));
        QVERIFY(title.value(QStringLiteral("dragsDialog")).toBool());
        QVERIFY(title.value(QStringLiteral("minimizeHidden")).toBool());
        QVERIFY(title.value(QStringLiteral("maximizeHidden")).toBool());
    }

    // --- texts -----------------------------------------------------------------------

    void texts_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("tip");
        QTest::addColumn<QString>("select");
        QTest::addColumn<QString>("cancel");
        QTest::addColumn<QString>("ok");
        QTest::addColumn<QString>("notice");
        QTest::newRow("English") << "English" << QString() << "Please select a language" << "Cancel" << "OK" << kEnglishNotice;
        QTest::newRow("German") << "German" << QString() << "Bitte wählen Sie eine Sprache" << "Abbrechen" << "OK"
                                << kGermanNotice;
        QTest::newRow("ChineseTraditional") << "ChineseTraditional" << QString() << "請選擇語言" << "取消" << "確定"
                                            << "提示： 程式將重新啟動以套用變更。";
        QTest::newRow("host notice") << "German" << "prop:CoreLanguageChangeTip=string:Restart me later."
                                     << "Bitte wählen Sie eine Sprache" << "Abbrechen" << "OK" << "Restart me later.";
        QTest::newRow("empty host notice") << "English" << "prop:CoreLanguageChangeTip=string:" << "Please select a language"
                                           << "Cancel" << "OK" << kEnglishNotice;
        QTest::newRow("numeric host notice") << "English" << "prop:CoreLanguageChangeTip=int:42" << "Please select a language"
                                             << "Cancel" << "OK" << "42";
    }

    void texts()
    {
        QFETCH(QString, language);
        QFETCH(QString, tip);
        QFETCH(QString, select);
        QFETCH(QString, cancel);
        QFETCH(QString, ok);
        QFETCH(QString, notice);
        ProbeFolder product;
        QVERIFY(prepare(product));
        QVERIFY(product.write(QStringLiteral("language/language"), language.toUtf8()));
        QStringList commands{command("langdialog:new"), command("langdialog:restart=1"), command("langdialog:show"),
                             command("langdialog:report")};
        if (!tip.isEmpty())
            commands.prepend(tip);
        const QJsonObject r = dialogReport(product, commands);
        QCOMPARE(r.value(QStringLiteral("select")).toObject().value(QStringLiteral("text")).toString(), select);
        QCOMPARE(r.value(QStringLiteral("cancelText")).toString(), cancel);
        QCOMPARE(r.value(QStringLiteral("okText")).toString(), ok);
        QCOMPARE(r.value(QStringLiteral("notice")).toObject().value(QStringLiteral("text")).toString(), notice);
    }

    void languageChangeRetranslates()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        QVERIFY(product.write(QStringLiteral("language/language"), "English"));
        const QJsonObject r = dialogReport(product, {command("langdialog:new"), command("langdialog:show"),
                                                     command("setlang:German"), command("langdialog:report")});
        QCOMPARE(r.value(QStringLiteral("select")).toObject().value(QStringLiteral("text")).toString(),
                 QStringLiteral("Bitte wählen Sie eine Sprache"));
        QCOMPARE(r.value(QStringLiteral("cancelText")).toString(), QStringLiteral("Abbrechen"));
        QCOMPARE(r.value(QStringLiteral("notice")).toObject().value(QStringLiteral("text")).toString(), kGermanNotice);
    }

    void languageChangeReadsTheHostNoticeAgain()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        ProbeRun run;
        dialogReport(product, {command("langdialog:new"), command("langdialog:report"),
                               command("prop:CoreLanguageChangeTip=string:Later."), command("langdialog:report"),
                               command("langdialog:languagechange"), command("langdialog:report")},
                     &run);
        const QList<QJsonObject> reports = reportsOf(run, QStringLiteral("langdialog"));
        QCOMPARE(reports.size(), 3);
        const auto notice = [](const QJsonObject& r) {
            return r.value(QStringLiteral("notice")).toObject().value(QStringLiteral("text")).toString();
        };
        QCOMPARE(notice(reports.at(0)), kEnglishNotice);
        QCOMPARE(notice(reports.at(1)), kEnglishNotice);
        QCOMPARE(notice(reports.at(2)), QStringLiteral("Later."));
    }

    // --- dragging by the body --------------------------------------------------------

    void dragByTheBody_data()
    {
        QTest::addColumn<QStringList>("mouse");
        QTest::addColumn<QPoint>("moved");
        QTest::newRow("left button") << QStringList{command("langdialog:press=100,100,left"),
                                                     command("langdialog:move=130,120,left")}
                                     << QPoint(30, 20);
        QTest::newRow("several moves follow the cursor")
            << QStringList{command("langdialog:press=100,100,left"), command("langdialog:move=110,105,left"),
                           command("langdialog:move=130,120,left")}
            << QPoint(40, 25);
        QTest::newRow("right button") << QStringList{command("langdialog:press=100,100,right"),
                                                      command("langdialog:move=130,120,right")}
                                      << QPoint();
        QTest::newRow("press with two buttons") << QStringList{command("langdialog:press=100,100,left+right"),
                                                                command("langdialog:move=130,120,left")}
                                                << QPoint();
        QTest::newRow("move with two buttons") << QStringList{command("langdialog:press=100,100,left"),
                                                               command("langdialog:move=130,120,left+right")}
                                               << QPoint();
        QTest::newRow("move after release") << QStringList{command("langdialog:press=100,100,left"),
                                                            command("langdialog:release=100,100,left"),
                                                            command("langdialog:move=130,120,left")}
                                            << QPoint();
        QTest::newRow("press at the origin") << QStringList{command("langdialog:press=0,0,left"),
                                                             command("langdialog:move=30,20,left")}
                                             << QPoint();
        QTest::newRow("move without press") << QStringList{command("langdialog:move=130,120,left")} << QPoint();
    }

    void dragByTheBody()
    {
        QFETCH(QStringList, mouse);
        QFETCH(QPoint, moved);
        ProbeFolder product;
        QVERIFY(prepare(product));
        ProbeRun run;
        dialogReport(product, QStringList{command("langdialog:new"), command("langdialog:show"), command("langdialog:report")}
                                  + mouse + QStringList{command("langdialog:report")},
                     &run);
        const QList<QJsonObject> reports = reportsOf(run, QStringLiteral("langdialog"));
        QCOMPARE(reports.size(), 2);
        const QPoint before = point(reports.at(0).value(QStringLiteral("pos")));
        const QPoint after = point(reports.at(1).value(QStringLiteral("pos")));
        QCOMPARE(after - before, moved);
    }
};

QTEST_MAIN(tst_LanguageSelectDialog)
#include "tst_languageselectdialog.moc"
