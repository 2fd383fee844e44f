// Style-sheet assembly as skin initialisation does it: ten files of 20 KB, read in the
// order of their names, with every "url(:/" rewritten into the skin's picture folder,
// plus the separator rule check. Against reading the same files into one text.
#include "zvbench.h"

#include <ZVCore/private/CStyleSheetManager>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QTemporaryDir>

using ZVUIFramework::CStyleSheetManager;
using namespace ZVBench;

namespace {

// About \a bytes of style sheet: rules for named widgets, a third of them with a picture
// from the resource root.
QByteArray styleSheet(int file, int bytes)
{
    QByteArray text = "/* Style sheet " + QByteArray::number(file) + " of the benchmark skin. */\n";
    for (int rule = 0; text.size() < bytes; ++rule) {
        const QByteArray name = "widget_" + QByteArray::number(file) + '_' + QByteArray::number(rule);
        text += "QPushButton#" + name + " {\n    color: #2b2f36;\n    background: #ffffff;\n"
                "    border: 1px solid #d9dce3;\n    border-radius: 4px;\n    padding: 4px 12px;\n";
        if (rule % 3 == 0)
            text += "    image: url(:/" + name + ".png);\n";
        text += "}\nQPushButton#" + name + ":hover { background: #e8f0fd; }\n";
    }
    return text;
}

} // namespace

int main(int argc, char** argv)
{
    keepHeapWarm();
    QCoreApplication app(argc, argv);
    const QString name = QStringLiteral("style-sheet assembly, 10 files of 20 KB, url rewriting");
    progress(name);

    QTemporaryDir folder;
    if (!folder.isValid())
        return 0;
    const QString qssDir = folder.path() + QLatin1Char('/');
    QMap<QString, bool> files;
    qint64 total = 0;
    for (int i = 0; i < 10; ++i) {
        const QString file = QStringLiteral("sheet%1.qss").arg(i, 2, 10, QLatin1Char('0'));
        QFile out(qssDir + file);
        const QByteArray text = styleSheet(i, 20 * 1024);
        if (!out.open(QIODevice::WriteOnly) || out.write(text) != text.size())
            return 0;
        total += text.size();
        files.insert(file, true);
    }

    QString assembled;
    const auto assemble = [&] {
        assembled = CStyleSheetManager::Assemble(files, qssDir, QStringLiteral("skin/PictureNormal/"));
    };
    // The least that reading them into one text takes: the bytes of every file, then
    // one decoded text of the right size.
    QString read;
    const auto readFiles = [&] {
        QByteArray bytes[10];
        int size = 0;
        int n = 0;
        for (auto it = files.cbegin(); it != files.cend(); ++it) {
            QFile file(qssDir + it.key());
            if (file.open(QIODevice::ReadOnly))
                bytes[n] = file.readAll();
            size += bytes[n++].size();
        }
        read.clear();
        read.reserve(size);
        for (int i = 0; i < n; ++i)
            read += QString::fromUtf8(bytes[i]);
    };

    if (underCallgrind()) {
        countInstructions(QStringLiteral("stylesheet.assemble"), assemble);
        countInstructions(QStringLiteral("stylesheet.read"), readFiles);
        return 0;
    }
    const auto samples = timePair(assemble, readFiles, 101, 3);

    Row row;
    row.benchmark = name;
    row.value = samples.first.median();
    row.baseline = QStringLiteral("reading the same files into one text");
    row.baselineValue = samples.second.median();
    row.goal = Goal::RatioAtMost;
    row.limit = 1.5;
    row.goalText = QStringLiteral("≤ 1.5×");
    row.runs = 101;
    row.instructions = QStringLiteral("stylesheet.assemble");
    row.baselineInstructions = QStringLiteral("stylesheet.read");
    row.note = QStringLiteral("%1 KB read; %2 references rewritten")
                   .arg(total / 1024)
                   .arg(assembled.count(QLatin1String("url(skin/PictureNormal/")));
    emitRow(row);
    return 0;
}
