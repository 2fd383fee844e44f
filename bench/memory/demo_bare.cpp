// The demo's widgets without the frame: a bare QApplication with a QMainWindow holding a
// title row of the same widgets and a folder view built like the demo's (path label,
// three buttons, a four-column sorted tree of the folder's entries, a summary line),
// listing the folder given with --folder. It runs until it is ended.
#include "hostform.h"

#include <QtCore/QDir>
#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <cstring>

namespace {

QWidget* folderView(const QString& folder)
{
    auto* view = new QWidget;
    auto* path = new QLabel(QDir::toNativeSeparators(folder));
    auto* up = new QPushButton(QStringLiteral("Up"));
    auto* refresh = new QPushButton(QStringLiteral("Refresh"));
    auto* choose = new QPushButton(QStringLiteral("Choose folder…"));
    auto* tree = new QTreeWidget;
    tree->setColumnCount(4);
    tree->setRootIsDecorated(false);
    tree->setAlternatingRowColors(true);
    tree->setUniformRowHeights(true);
    tree->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Type"), QStringLiteral("Size"), QStringLiteral("Modified")});
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int column = 1; column < 4; ++column)
        tree->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    qint64 total = 0;
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::DirsFirst);
    for (const QFileInfo& info : entries) {
        auto* item = new QTreeWidgetItem(tree);
        item->setText(0, info.fileName());
        item->setText(1, info.isDir() ? QStringLiteral("Folder") : QStringLiteral("File"));
        item->setText(2, QStringLiteral("%1 B").arg(info.size()));
        item->setText(3, QLocale().toString(info.lastModified(), QLocale::ShortFormat));
        total += info.size();
    }
    tree->setSortingEnabled(true);
    tree->sortByColumn(2, Qt::DescendingOrder);
    auto* summary = new QLabel(QStringLiteral("%1 entries, %2 B in total").arg(entries.size()).arg(total));

    auto* top = new QHBoxLayout;
    top->setSpacing(8);
    top->addWidget(path, 1);
    top->addWidget(up);
    top->addWidget(refresh);
    top->addWidget(choose);
    auto* layout = new QVBoxLayout(view);
    layout->setContentsMargins(20, 14, 20, 16);
    layout->setSpacing(10);
    layout->addLayout(top);
    layout->addWidget(tree, 1);
    layout->addWidget(summary);
    return view;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QString folder = QDir::homePath();
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "--folder") == 0)
            folder = QString::fromLocal8Bit(argv[i + 1]);
    }
    QMainWindow window;
    window.setMenuWidget(new BareTitle);
    window.setCentralWidget(folderView(folder));
    window.setMinimumSize(760, 520);
    window.resize(1000, 680);
    window.show();
    return app.exec();
}
