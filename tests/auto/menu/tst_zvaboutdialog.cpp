// The About box, each scenario in a product folder and a process of its own: its texts
// come from the product file, the application object, the link file and translations.
#include "probe.h"

#include <ZVCore/private/zvcoreconfig_p.h>
#include <ZVFoundation/CSimpleCrypt>

#include <QtTest/QtTest>

namespace {

const QByteArray kProductInfo = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<product><ZV_BRANDNAME>Zephyr</ZV_BRANDNAME><ZV_APP_NAME>Canvas</ZV_APP_NAME>"
                                "<ZV_INFO>Paints pictures.</ZV_INFO></product>\n";

const QString kIntroduction = QString::fromUtf8(ZVCORE_COMPANY_INTRODUCTION);
const QString kCopyright = QString::fromUtf8(ZVCORE_COMPANY_COPYRIGHT);
const QString kHome = QString::fromUtf8(ZVCORE_HOME_URL);
const QString kSupport = QString::fromUtf8(ZVCORE_SUPPORT_URL);

const int kLeading = int(Qt::AlignLeft | Qt::AlignVCenter);
const int kTrailing = int(Qt::AlignRight | Qt::AlignVCenter);

QString command(const char* text)
{
    return QString::fromUtf8(text);
}

QString link(const QString& color, const QString& address, const QString& text)
{
    return QStringLiteral(" <style> a {text-decoration: none ; color: ") + color + QStringLiteral(";} </style><a href=\"")
        + address + QStringLiteral("\">") + text;
}

QByteArray cipher(const QString& plain)
{
    return CSimpleCrypt(ZVCORE_LINK_CIPHER_KEY).encryptToString(plain).toLatin1();
}

QByteArray linkFile(const QString& home, const QString& support)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<urls><menu>";
    if (!home.isEmpty())
        xml += "<childMenu><menuName>AboutHome</menuName><url>" + cipher(home) + "</url><isShow>1</isShow></childMenu>";
    if (!support.isEmpty())
        xml += "<childMenu><menuName>AboutSupport</menuName><url>" + cipher(support) + "</url><isShow>1</isShow></childMenu>";
    return xml + "</menu></urls>\n";
}

bool installTranslation(const ProbeFolder& product, const QString& name)
{
    const QString file = QStringLiteral("ZVCore_") + name + QStringLiteral(".qm");
    QDir().mkpath(product.file(QStringLiteral("language/qm/ZVCore")));
    return QFile::copy(QStringLiteral(ZV_QM_DIR "/") + file, product.file(QStringLiteral("language/qm/ZVCore/") + file));
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

QStringList strings(const QJsonValue& value)
{
    QStringList list;
    for (const QJsonValue& v : value.toArray())
        list.append(v.toString());
    return list;
}

QJsonObject item(const QJsonObject& layout, int index)
{
    return layout.value(QStringLiteral("items")).toArray().at(index).toObject();
}

int itemCount(const QJsonObject& layout)
{
    return layout.value(QStringLiteral("items")).toArray().size();
}

QJsonObject sublayout(const QJsonObject& layout, int index)
{
    return item(layout, index).value(QStringLiteral("layout")).toObject();
}

QList<QJsonObject> reportsOf(const ProbeRun& run)
{
    QList<QJsonObject> list;
    for (const QJsonObject& r : run.reports) {
        if (r.value(QStringLiteral("cmd")).toString() == QLatin1String("aboutdialog"))
            list.append(r);
    }
    return list;
}

} // namespace

class tst_ZVAboutDialog : public QObject
{
    Q_OBJECT

private:
    // A product folder with the product file.
    static bool prepare(ProbeFolder& product)
    {
        return product.isValid() && product.write(QStringLiteral("productInfo.xml"), kProductInfo);
    }

    // Runs \a setup, builds and shows the dialog, runs \a after and returns the last report.
    static QJsonObject shown(const ProbeFolder& product, const QStringList& setup = QStringList(),
                             const QStringList& after = QStringList(), ProbeRun* out = nullptr)
    {
        const ProbeRun run = product.run(setup + QStringList{command("aboutdialog:new"), command("aboutdialog:show")} + after
                                         + QStringList{command("aboutdialog:report")});
        if (out)
            *out = run;
        const QList<QJsonObject> reports = reportsOf(run);
        if (run.exitCode != 0 || reports.isEmpty()) {
            qWarning().noquote() << "probe failed:" << run.exitCode << run.log.join(QLatin1Char('\n'));
            return QJsonObject();
        }
        return reports.last();
    }

    static QJsonObject label(const QJsonObject& report, const char* name)
    {
        return report.value(QStringLiteral("labels")).toObject().value(QLatin1String(name)).toObject();
    }

    static QString text(const QJsonObject& report, const char* name)
    {
        return label(report, name).value(QStringLiteral("text")).toString();
    }

private slots:
    // --- widgets and layout ----------------------------------------------------------

    void widgets()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product);
        QCOMPARE(r.value(QStringLiteral("objectName")).toString(), QStringLiteral("ZVAboutDialog"));
        QCOMPARE(size(r.value(QStringLiteral("minimumSize"))), QSize(560, 350));
        QCOMPARE(size(r.value(QStringLiteral("maximumSize"))), QSize(560, 350));

        const QJsonObject title = r.value(QStringLiteral("title")).toObject();
        QCOMPARE(title.value(QStringLiteral("class")).toString(), QStringLiteral("CCustomWidgetTitle"));
        QCOMPARE(title.value(QStringLiteral("minimumHeight")).toInt(), 40);
        QCOMPARE(title.value(QStringLiteral("maximumHeight")).toInt(), 40);

        const QJsonObject background = r.value(QStringLiteral("background")).toObject();
        QCOMPARE(size(background.value(QStringLiteral("minimumSize"))), QSize(550, 200));
        QCOMPARE(size(background.value(QStringLiteral("maximumSize"))), QSize(550, 200));

        QCOMPARE(size(label(r, "Core_label_logo").value(QStringLiteral("minimumSize"))), QSize(50, 50));
        QCOMPARE(size(label(r, "Core_label_logo").value(QStringLiteral("maximumSize"))), QSize(50, 50));
        QCOMPARE(label(r, "Core_separator_line").value(QStringLiteral("minimumSize")).toArray().at(1).toInt(), 1);
        QCOMPARE(label(r, "Core_separator_line").value(QStringLiteral("maximumSize")).toArray().at(1).toInt(), 1);
        QVERIFY(label(r, "Core_productName").value(QStringLiteral("wordWrap")).toBool());
        QVERIFY(label(r, "Core_productInfo").value(QStringLiteral("wordWrap")).toBool());
        QVERIFY(label(r, "Core_labelCompanyInfo").value(QStringLiteral("wordWrap")).toBool());
        QCOMPARE(label(r, "Core_labelCompanyInfo").value(QStringLiteral("alignment")).toInt(),
                 int(Qt::AlignLeft | Qt::AlignTop));

        const QStringList zvLabels{QStringLiteral("Core_official_website"), QStringLiteral("Core_contact_support")};
        const QJsonObject labels = r.value(QStringLiteral("labels")).toObject();
        for (auto it = labels.begin(); it != labels.end(); ++it) {
            const QJsonObject l = it.value().toObject();
            QVERIFY2(!l.value(QStringLiteral("missing")).toBool(), qPrintable(it.key()));
            QCOMPARE(l.value(QStringLiteral("class")).toString(),
                     zvLabels.contains(it.key()) ? QStringLiteral("ZVLabel") : QStringLiteral("QLabel"));
        }
        QCOMPARE(labels.size(), 9);
    }

    void layout()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product);

        const QJsonObject dialog = r.value(QStringLiteral("layout")).toObject();
        QCOMPARE(ints(dialog.value(QStringLiteral("margins"))), (QList<int>{5, 5, 5, 5}));
        QCOMPARE(dialog.value(QStringLiteral("spacing")).toInt(), 0);
        QCOMPARE(itemCount(dialog), 2);
        QCOMPARE(item(dialog, 0).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_about_title"));
        QCOMPARE(item(dialog, 1).value(QStringLiteral("widget")).toString(), QStringLiteral("background_widget"));

        const QJsonObject content = r.value(QStringLiteral("background")).toObject().value(QStringLiteral("layout")).toObject();
        QCOMPARE(ints(content.value(QStringLiteral("margins"))), (QList<int>{34, 12, 34, 28}));
        QCOMPARE(content.value(QStringLiteral("spacing")).toInt(), 0);
        QCOMPARE(itemCount(content), 7);

        const QJsonObject head = sublayout(content, 0);
        QCOMPARE(ints(head.value(QStringLiteral("margins"))), (QList<int>{0, 0, 0, 0}));
        QCOMPARE(head.value(QStringLiteral("spacing")).toInt(), 16);
        QCOMPARE(itemCount(head), 2);
        QCOMPARE(item(head, 0).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_label_logo"));
        const QJsonObject column = sublayout(head, 1);
        QCOMPARE(ints(column.value(QStringLiteral("margins"))), (QList<int>{0, 0, 0, 0}));
        QCOMPARE(column.value(QStringLiteral("spacing")).toInt(), 4);
        QCOMPARE(itemCount(column), 4);
        QCOMPARE(item(column, 0).value(QStringLiteral("vPolicy")).toInt(), int(QSizePolicy::Expanding));
        QCOMPARE(item(column, 1).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_productName"));
        QCOMPARE(item(column, 2).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_productInfo"));
        QCOMPARE(item(column, 3).value(QStringLiteral("vPolicy")).toInt(), int(QSizePolicy::Expanding));

        QCOMPARE(ints(item(content, 1).value(QStringLiteral("spacer"))), (QList<int>{0, 12}));
        QCOMPARE(item(content, 1).value(QStringLiteral("vPolicy")).toInt(), int(QSizePolicy::Fixed));
        QCOMPARE(item(content, 2).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_separator_line"));
        QCOMPARE(item(content, 3).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_labelCompanyInfo"));
        QCOMPARE(item(content, 3).value(QStringLiteral("stretch")).toInt(), 1);

        const QJsonObject links = sublayout(content, 4);
        QCOMPARE(ints(links.value(QStringLiteral("margins"))), (QList<int>{0, 0, 0, 0}));
        QCOMPARE(links.value(QStringLiteral("spacing")).toInt(), 0);
        QCOMPARE(itemCount(links), 2);
        QCOMPARE(item(links, 0).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_official_website"));
        QCOMPARE(item(links, 1).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_contact_support"));

        QCOMPARE(ints(item(content, 5).value(QStringLiteral("spacer"))), (QList<int>{0, 12}));
        QCOMPARE(item(content, 5).value(QStringLiteral("vPolicy")).toInt(), int(QSizePolicy::Fixed));

        const QJsonObject bottom = sublayout(content, 6);
        QCOMPARE(ints(bottom.value(QStringLiteral("margins"))), (QList<int>{0, 0, 0, 0}));
        QCOMPARE(bottom.value(QStringLiteral("spacing")).toInt(), 0);
        QCOMPARE(itemCount(bottom), 2);
        QCOMPARE(item(bottom, 0).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_label_version"));
        QCOMPARE(item(bottom, 1).value(QStringLiteral("widget")).toString(), QStringLiteral("Core_label_copyright"));
    }

    void radiusStyleSheet_data()
    {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QString>("styleSheet");
        QTest::newRow("absent") << QStringList()
                                << "QWidget#background_widget { border-bottom-left-radius: 0px;border-bottom-right-radius: 0px; }";
        QTest::newRow("10") << QStringList{command("prop:dlgRadius=int:10")}
                            << "QWidget#background_widget { border-bottom-left-radius: 10px;border-bottom-right-radius: 10px; }";
    }

    void radiusStyleSheet()
    {
        QFETCH(QStringList, setup);
        QFETCH(QString, styleSheet);
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product, setup);
        QCOMPARE(r.value(QStringLiteral("background")).toObject().value(QStringLiteral("styleSheet")).toString(), styleSheet);
    }

    // --- filling ---------------------------------------------------------------------

    void textsWaitForTheFirstPolish()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const ProbeRun run = product.run({command("aboutdialog:new"), command("aboutdialog:report")});
        const QList<QJsonObject> reports = reportsOf(run);
        QCOMPARE(reports.size(), 1);
        const QJsonObject r = reports.first();
        for (const char* name : {"Core_productName", "Core_productInfo", "Core_labelCompanyInfo", "Core_official_website",
                                 "Core_contact_support", "Core_label_version", "Core_label_copyright"})
            QCOMPARE(text(r, name), QString());
        QCOMPARE(r.value(QStringLiteral("title")).toObject().value(QStringLiteral("text")).toString(), QString());
        QVERIFY(!r.value(QStringLiteral("title")).toObject().value(QStringLiteral("dragsDialog")).toBool());
    }

    void titleBarAfterPolish()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product);
        QCOMPARE(r.value(QStringLiteral("title")).toObject().value(QStringLiteral("text")).toString(), QStringLiteral("About Us"));
        QVERIFY(r.value(QStringLiteral("title")).toObject().value(QStringLiteral("dragsDialog")).toBool());
    }

    void titleBarCloseClosesTheDialog()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product, {}, {command("aboutdialog:titleclose")});
        QVERIFY(!r.value(QStringLiteral("visible")).toBool());
    }

    void textsAreFilledOnlyOnce()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product, {command("prop:FullProductName=string:First")},
                                    {command("prop:FullProductName=string:Second"), command("prop:CompanyCopyright=string:Later"),
                                     command("aboutdialog:polish")});
        QCOMPARE(text(r, "Core_productName"), QStringLiteral("First"));
        QCOMPARE(text(r, "Core_label_copyright"), kCopyright);
    }

    void productName_data()
    {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QString>("name");
        QTest::newRow("property") << QStringList{command("prop:FullProductName=string:Zephyr Canvas Pro 2026")}
                                  << "Zephyr Canvas Pro 2026";
        QTest::newRow("absent: brand and application name") << QStringList() << "Zephyr Canvas";
        QTest::newRow("empty: brand and application name") << QStringList{command("prop:FullProductName=string:")}
                                                           << "Zephyr Canvas";
    }

    void productName()
    {
        QFETCH(QStringList, setup);
        QFETCH(QString, name);
        ProbeFolder product;
        QVERIFY(prepare(product));
        QCOMPARE(text(shown(product, setup), "Core_productName"), name);
    }

    void productNameWithoutProductFile()
    {
        // Brand and application name both empty: only the blank between them remains.
        ProbeFolder product;
        QVERIFY(product.isValid());
        QCOMPARE(text(shown(product), "Core_productName"), QStringLiteral(" "));
    }

    void productDescription()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        QCOMPARE(text(shown(product), "Core_productInfo"), QStringLiteral("Paints pictures."));
    }

    void version_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("text");
        QTest::newRow("four parts") << "2.1.0.15" << "Version: 2.1.0";
        QTest::newRow("two parts") << "1.2" << "Version: 1";
        QTest::newRow("no dot stays whole") << "7" << "Version: 7";
        QTest::newRow("trailing dot") << "3.0.0." << "Version: 3.0.0";
        QTest::newRow("none") << "" << "Version: ";
    }

    void version()
    {
        QFETCH(QString, version);
        QFETCH(QString, text);
        ProbeFolder product;
        QVERIFY(prepare(product));
#ifdef Q_OS_WIN
        // Windows reads the version from the program's version resource, which always
        // holds four numbers.
        QStringList parts = version.split(QLatin1Char('.'));
        if (!version.isEmpty()) {
            if (parts.size() != 4)
                QSKIP("a version resource holds four numbers");
            QVERIFY(product.setFileVersion(parts.at(0).toUShort(), parts.at(1).toUShort(), parts.at(2).toUShort(),
                                           parts.at(3).toUShort()));
        }
        QCOMPARE(this->text(shown(product), "Core_label_version"), text);
#else
        QCOMPARE(this->text(shown(product, {QStringLiteral("appversion:") + version}), "Core_label_version"), text);
#endif
    }

    void companyIntroduction_data()
    {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QString>("introduction");
        QTest::newRow("property") << QStringList{command("prop:CompanyIntroduction=string:We make tools.")}
                                  << "<p style='line-height:20px'>We make tools.</p>";
        QTest::newRow("built in") << QStringList() << QStringLiteral("<p style='line-height:20px'>%1</p>").arg(kIntroduction);
        QTest::newRow("empty: built in") << QStringList{command("prop:CompanyIntroduction=string:")}
                                         << QStringLiteral("<p style='line-height:20px'>%1</p>").arg(kIntroduction);
    }

    void companyIntroduction()
    {
        QFETCH(QStringList, setup);
        QFETCH(QString, introduction);
        ProbeFolder product;
        QVERIFY(prepare(product));
        QCOMPARE(text(shown(product, setup), "Core_labelCompanyInfo"), introduction);
    }

    void copyright_data()
    {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QString>("copyright");
        QTest::newRow("property") << QStringList{command("prop:CompanyCopyright=string:(c) Zephyr")} << "(c) Zephyr";
        QTest::newRow("built in") << QStringList() << kCopyright;
    }

    void copyright()
    {
        QFETCH(QStringList, setup);
        QFETCH(QString, copyright);
        ProbeFolder product;
        QVERIFY(prepare(product));
        QCOMPARE(text(shown(product, setup), "Core_label_copyright"), copyright);
    }

    void translated()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        QVERIFY(installTranslation(product, QStringLiteral("ChineseTraditional")));
#ifdef Q_OS_WIN
        QVERIFY(product.setFileVersion(2, 1, 0, 15));
#endif
        const QJsonObject r = shown(product, {command("prop:ForceLanguage=string:ChineseTraditional"),
                                              command("appversion:2.1.0.15")});
        QCOMPARE(r.value(QStringLiteral("title")).toObject().value(QStringLiteral("text")).toString(), QStringLiteral("關於我們"));
        QCOMPARE(text(r, "Core_label_version"), QStringLiteral("版本：2.1.0"));
        QCOMPARE(text(r, "Core_official_website"), link(QString(), kHome, QStringLiteral("官方網站")));
        QCOMPARE(text(r, "Core_contact_support"), link(QString(), kSupport, QStringLiteral("聯絡客服")));
    }

    // --- links -----------------------------------------------------------------------

    void addresses_data()
    {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QByteArray>("links");
        QTest::addColumn<QString>("homeShown");
        QTest::addColumn<QString>("homeOpened");
        QTest::addColumn<QString>("supportShown");
        QTest::addColumn<QString>("supportOpened");
        const QStringList properties{command("prop:HomeURL=string:https://home.example/"),
                                     command("prop:SupportURL=string:https://help.example/ask")};
        const QByteArray file = linkFile(QStringLiteral("https://home.example/?key=about"),
                                         QStringLiteral("https://help.example/?key=support"));
        QTest::newRow("built in") << QStringList() << QByteArray() << kHome << kHome << kSupport << kSupport;
        QTest::newRow("properties") << properties << QByteArray() << "https://home.example/"
                                    << "https://home.example/" << "https://help.example/ask" << "https://help.example/ask";
        QTest::newRow("link file") << QStringList() << file << kHome << "https://home.example/?key=about" << kSupport
                                   << "https://help.example/?key=support";
        QTest::newRow("properties and link file")
            << properties << file << "https://home.example/" << "https://home.example/?key=about"
            << "https://help.example/ask" << "https://help.example/?key=support";
        QTest::newRow("link file with only the home entry")
            << properties << linkFile(QStringLiteral("https://home.example/?key=about"), QString())
            << "https://home.example/" << "https://home.example/?key=about" << "https://help.example/ask"
            << "https://help.example/ask";
        QTest::newRow("empty properties") << QStringList{command("prop:HomeURL=string:"), command("prop:SupportURL=string:")}
                                          << QByteArray() << kHome << kHome << kSupport << kSupport;
    }

    void addresses()
    {
        QFETCH(QStringList, setup);
        QFETCH(QByteArray, links);
        QFETCH(QString, homeShown);
        QFETCH(QString, homeOpened);
        QFETCH(QString, supportShown);
        QFETCH(QString, supportOpened);
        ProbeFolder product;
        QVERIFY(prepare(product));
        if (!links.isEmpty())
            QVERIFY(product.write(QStringLiteral("language/main/English_URL.xml"), links));
        const QJsonObject r = shown(product, setup, {command("aboutdialog:click=home"), command("aboutdialog:click=support")});

        QCOMPARE(text(r, "Core_official_website"), link(QString(), homeShown, QStringLiteral("Official Website")));
        QCOMPARE(label(r, "Core_official_website").value(QStringLiteral("toolTip")).toString(), homeShown);
        QCOMPARE(text(r, "Core_contact_support"), link(QString(), supportShown, QStringLiteral("Contact Support")));
        QCOMPARE(label(r, "Core_contact_support").value(QStringLiteral("toolTip")).toString(), supportShown);

        QCOMPARE(r.value(QStringLiteral("homeDisplay")).toString(), homeShown);
        QCOMPARE(r.value(QStringLiteral("homeOpening")).toString(), homeOpened);
        QCOMPARE(r.value(QStringLiteral("supportDisplay")).toString(), supportShown);
        QCOMPARE(r.value(QStringLiteral("supportOpening")).toString(), supportOpened);

        // The href the label reports is ignored; the opening address is what opens.
        QCOMPARE(strings(r.value(QStringLiteral("opened"))), (QStringList{homeOpened, supportOpened}));
    }

    void eachClickOpensOnce()
    {
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product, {}, {command("aboutdialog:click=support"), command("aboutdialog:click=support"),
                                                  command("aboutdialog:click=home")});
        QCOMPARE(strings(r.value(QStringLiteral("opened"))), (QStringList{kSupport, kSupport, kHome}));
    }

    void linkColor_data()
    {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QString>("color");
        QTest::newRow("from the style sheet")
            << QStringList{command("aboutdialog:stylesheet=ZVAboutDialog { qproperty-linkColor: \"#0088ff\"; }")} << "#0088ff";
        QTest::newRow("by object name")
            << QStringList{command("aboutdialog:stylesheet=#ZVAboutDialog { qproperty-linkColor: red; }")} << "red";
        QTest::newRow("none") << QStringList() << QString();
    }

    void linkColor()
    {
        QFETCH(QStringList, setup);
        QFETCH(QString, color);
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product, setup);
        QCOMPARE(r.value(QStringLiteral("linkColor")).toString(), color);
        QCOMPARE(text(r, "Core_official_website"), link(color, kHome, QStringLiteral("Official Website")));
        QCOMPARE(text(r, "Core_contact_support"), link(color, kSupport, QStringLiteral("Contact Support")));
        for (const char* name : {"Core_official_website", "Core_contact_support"})
            QVERIFY(text(r, name).contains(QStringLiteral("text-decoration: none")));
    }

    // --- right to left ---------------------------------------------------------------

    void alignment_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<bool>("enableRightToLeft");
        QTest::addColumn<int>("nameAlignment");
        QTest::addColumn<bool>("mirrored");
        QTest::addColumn<QString>("direction");
        QTest::newRow("English") << "English" << false << int(Qt::AlignLeft) << false << "ltr";
        QTest::newRow("English, right to left enabled") << "English" << true << int(Qt::AlignLeft) << false << "ltr";
        QTest::newRow("Arabic: mirrored by the dialog") << "Arabic" << false << int(Qt::AlignRight) << true << "ltr";
        QTest::newRow("Arabic, right to left enabled: mirrored by Qt")
            << "Arabic" << true << int(Qt::AlignRight) << false << "rtl";
        QTest::newRow("arabic in lower case") << "arabic" << false << int(Qt::AlignRight) << true << "ltr";
        // Only the exact name switches Qt's direction, so nothing mirrors these rows.
        QTest::newRow("ARABIC, right to left enabled") << "ARABIC" << true << int(Qt::AlignRight) << false << "ltr";
    }

    void alignment()
    {
        QFETCH(QString, language);
        QFETCH(bool, enableRightToLeft);
        QFETCH(int, nameAlignment);
        QFETCH(bool, mirrored);
        QFETCH(QString, direction);
        ProbeFolder product;
        QVERIFY(prepare(product));
        const QJsonObject r = shown(product, {QStringLiteral("prop:ForceLanguage=string:") + language,
                                              QStringLiteral("prop:EnableRightToLeft=bool:")
                                                  + (enableRightToLeft ? QStringLiteral("true") : QStringLiteral("false"))});
        QCOMPARE(r.value(QStringLiteral("direction")).toString(), direction);
        QCOMPARE(label(r, "Core_productName").value(QStringLiteral("alignment")).toInt() & int(Qt::AlignHorizontal_Mask),
                 nameAlignment);
        const int leading = mirrored ? kTrailing : kLeading;
        const int trailing = mirrored ? kLeading : kTrailing;
        QCOMPARE(label(r, "Core_official_website").value(QStringLiteral("alignment")).toInt(), leading);
        QCOMPARE(label(r, "Core_label_version").value(QStringLiteral("alignment")).toInt(), leading);
        QCOMPARE(label(r, "Core_contact_support").value(QStringLiteral("alignment")).toInt(), trailing);
        QCOMPARE(label(r, "Core_label_copyright").value(QStringLiteral("alignment")).toInt(), trailing);
    }
};

QTEST_MAIN(tst_ZVAboutDialog)
#include "tst_zvaboutdialog.moc"
