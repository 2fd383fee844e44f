#include "screenshots.h"

#include "mainwindow.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QAction> // QtWidgets in Qt 5, QtGui in Qt 6
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtXml/QDomDocument>

#include <functional>

namespace Screenshots {
namespace {

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

bool save(const QPixmap& pixmap, const QString& folder, const QString& name, const QString& tag)
{
    const QString path = QDir(folder).filePath(name + QLatin1Char('-') + tag + QStringLiteral(".png"));
    if (pixmap.isNull() || !pixmap.save(path, "PNG")) {
        QTextStream(stderr) << "zvcore-demo: could not write " << path << "\n";
        return false;
    }
    out() << path << "\n";
    out().flush();
    return true;
}

// Opens something modal with \a open (which returns once it is closed); once it has been
// shown, \a shot receives the modal or popup widget, which is then closed.
bool whileOpen(const std::function<void()>& open, const std::function<bool(QWidget*)>& shot)
{
    bool taken = false;
    QTimer::singleShot(500, [&taken, &shot] {
        QWidget* widget = QApplication::activePopupWidget();
        if (!widget)
            widget = QApplication::activeModalWidget();
        if (!widget)
            return;
        taken = shot(widget);
        widget->close();
    });
    open();
    // Whatever did not open leaves the timer to fire here.
    wait(600);
    return taken;
}

// The caption of a title-menu entry, read from the language's link file (captions are
// stored in plain text there).
QString caption(const QString& language, const QString& menuName)
{
    for (const QString& name : {language + QStringLiteral("_URL.xml"), QStringLiteral("English_URL.xml")}) {
        QFile file(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("language/main/") + name));
        QDomDocument document;
        if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
            continue;
        const QDomNodeList entries = document.elementsByTagName(QStringLiteral("childMenu"));
        for (int i = 0; i < entries.size(); ++i) {
            const QDomElement entry = entries.at(i).toElement();
            if (entry.firstChildElement(QStringLiteral("menuName")).text() == menuName)
                return entry.firstChildElement(QStringLiteral("displayName")).text();
        }
    }
    return QString();
}

QAction* menuAction(QWidget* title, const QString& language, const QString& menuName)
{
    auto* menu = title->findChild<QMenu*>(QStringLiteral("titleMenu"));
    if (!menu)
        return nullptr;
    const QString text = caption(language, menuName);
    for (QAction* action : menu->actions()) {
        if (!action->isSeparator() && action->text() == text)
            return action;
    }
    return nullptr;
}

} // namespace

QString sampleFolder()
{
    static QTemporaryDir root;
    const QDir base(root.path());
    const QString folder = base.filePath(QStringLiteral("Holiday project"));
    struct Sample
    {
        const char* path;
        qint64 bytes;
    };
    const Sample samples[] = {
        {"Photos/beach-001.jpg", 4'812'345},  {"Photos/beach-002.jpg", 5'120'044},
        {"Photos/harbour.jpg", 3'904'118},    {"Videos/sunset.mp4", 184'320'512},
        {"Videos/boat-trip.mp4", 96'468'992}, {"Documents/itinerary.pdf", 842'117},
        {"Documents/budget.ods", 48'210},     {"Documents/notes.txt", 3'512},
        {"Music/playlist.m3u", 1'204},        {"packing-list.md", 2'048},
        {"map.png", 1'536'000},               {"tickets.pdf", 318'976},
        {"README", 640},
    };
    for (const Sample& sample : samples) {
        const QString path = QDir(folder).filePath(QString::fromLatin1(sample.path));
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.resize(sample.bytes);   // sparse: the size is what matters here
    }
    return folder;
}

int runAll(const QString& folder)
{
    if (!QDir().mkpath(folder)) {
        QTextStream(stderr) << "zvcore-demo: cannot create " << folder << "\n";
        return 1;
    }
    // The language manager saves every language it selects; the user's choice is put back.
    const QString saved = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("language/language"));
    QFile savedFile(saved);
    const bool hadSaved = savedFile.open(QIODevice::ReadOnly);
    const QByteArray savedChoice = hadSaved ? savedFile.readAll() : QByteArray();
    savedFile.close();

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
#ifdef Q_OS_WIN
    // Qt's offscreen platform on Windows reads fonts from a folder, by default one inside
    // Qt's own installation that holds none: it is pointed at the system's fonts.
    if (!environment.contains(QStringLiteral("QT_QPA_FONTDIR")))
        environment.insert(QStringLiteral("QT_QPA_FONTDIR"),
                           QDir::fromNativeSeparators(qEnvironmentVariable("WINDIR")) + QStringLiteral("/Fonts"));
#endif

    int status = 0;
    for (const QString skin : {QStringLiteral("light"), QStringLiteral("dark")}) {
        for (const QString language : {QStringLiteral("English"), QStringLiteral("Arabic")}) {
            QProcess child;
            child.setProcessEnvironment(environment);
            // The child's diagnostics (and those of the companions it starts) matter only
            // when it fails; the paths it prints are the result.
            child.start(QCoreApplication::applicationFilePath(),
                        {QStringLiteral("--screenshots"), folder, QStringLiteral("--skin"), skin,
                         QStringLiteral("--language"), language});
            if (!child.waitForFinished(120000) || child.exitStatus() != QProcess::NormalExit
                || child.exitCode() != 0) {
                QTextStream(stderr) << QString::fromLocal8Bit(child.readAllStandardError())
                                    << "zvcore-demo: screenshots failed for " << skin << "/" << language << "\n";
                status = 1;
            }
            out() << child.readAllStandardOutput();
            out().flush();
        }
    }

    if (hadSaved) {
        if (savedFile.open(QIODevice::WriteOnly | QIODevice::Truncate))
            savedFile.write(savedChoice);
    } else {
        QFile::remove(saved);
    }
    return status;
}

int takeAll(MainWindow* window, const QString& folder, const QString& tag)
{
    const QString language = qApp->property("ForceLanguage").toString();
    QDir().mkpath(folder);
    window->show();
    window->raise();
    window->activateWindow();
    wait(400);

    int failures = 0;
    if (!save(window->grab(), folder, QStringLiteral("main"), tag))
        ++failures;

    // The title menu, drawn over the window where it opens.
    QWidget* title = window->GetTitleWidget();
    auto* menuButton = title ? title->findChild<QPushButton*>(QStringLiteral("btn_menu")) : nullptr;
    const bool menuTaken = menuButton && whileOpen([menuButton] { menuButton->click(); },
                                                   [&](QWidget* menu) {
                                                       const QPixmap base = window->grab();
                                                       const QPixmap popup = menu->grab();
                                                       const QPoint at = menu->mapToGlobal(QPoint())
                                                                         - window->mapToGlobal(QPoint());
                                                       const QRect all = QRect(QPoint(), base.size())
                                                                             .united(QRect(at, popup.size()));
                                                       QPixmap canvas(all.size());
                                                       canvas.fill(Qt::transparent);
                                                       QPainter painter(&canvas);
                                                       painter.drawPixmap(-all.topLeft(), base);
                                                       painter.drawPixmap(at - all.topLeft(), popup);
                                                       painter.end();
                                                       return save(canvas, folder, QStringLiteral("menu"), tag);
                                                   });
    if (!menuTaken)
        ++failures;

    const auto dialog = [&](const QString& menuName, const QString& name) {
        QAction* action = title ? menuAction(title, language, menuName) : nullptr;
        if (!action) {
            QTextStream(stderr) << "zvcore-demo: no title-menu entry " << menuName << "\n";
            return false;
        }
        return whileOpen([action] { action->trigger(); },
                         [&](QWidget* widget) { return save(widget->grab(), folder, name, tag); });
    };
    if (!dialog(QStringLiteral("About"), QStringLiteral("about")))
        ++failures;
    if (!dialog(QStringLiteral("MultiLanguage"), QStringLiteral("language")))
        ++failures;

    window->close();
    return failures == 0 ? 0 : 1;
}

} // namespace Screenshots
