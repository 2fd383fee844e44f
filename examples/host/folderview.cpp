#include "folderview.h"

#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

namespace {

enum Column { NameColumn, KindColumn, SizeColumn, ModifiedColumn };
constexpr int kBytesRole = Qt::UserRole + 1;
constexpr int kFolderRole = Qt::UserRole + 2;
// A folder's size is the sum of the files under it; this bounds the time one listing
// may spend walking the subfolders.
constexpr qint64 kScanBudgetMs = 4000;

CSkin& skin()
{
    return ZVUIFramework::ZVApplicationInfo::GetInstance()->GetSkinObject();
}

// Sorts folders first, then by the column's value; sizes by their byte counts.
class EntryItem : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem& other) const override
    {
        const int column = treeWidget() ? treeWidget()->sortColumn() : NameColumn;
        if (column == SizeColumn)
            return data(SizeColumn, kBytesRole).toLongLong() < other.data(SizeColumn, kBytesRole).toLongLong();
        if (column == ModifiedColumn)
            return data(ModifiedColumn, kBytesRole).toDateTime() < other.data(ModifiedColumn, kBytesRole).toDateTime();
        const bool folder = data(NameColumn, kFolderRole).toBool();
        const bool otherFolder = other.data(NameColumn, kFolderRole).toBool();
        if (folder != otherFolder)
            return folder;
        return text(column).compare(other.text(column), Qt::CaseInsensitive) < 0;
    }
};

// Bytes under \a path; \a partial is set when the walk ran out of time.
qint64 folderBytes(const QString& path, const QElapsedTimer& clock, bool* partial)
{
    qint64 total = 0;
    QDirIterator it(path, QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
    int steps = 0;
    while (it.hasNext()) {
        it.next();
        total += it.fileInfo().size();
        if ((++steps & 255) == 0 && clock.elapsed() > kScanBudgetMs) {
            *partial = true;
            break;
        }
    }
    return total;
}

} // namespace

FolderView::FolderView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("FolderView"));
    setAttribute(Qt::WA_StyledBackground, true);

    m_path = new QLabel(this);
    m_path->setObjectName(QStringLiteral("folderPath"));
    m_path->setFont(skin().GetFontStyle(CSkin::Bold14));
    m_path->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_path->setMinimumWidth(100);

    m_up = new QPushButton(this);
    m_up->setObjectName(QStringLiteral("upFolder"));
    m_choose = new QPushButton(this);
    m_choose->setObjectName(QStringLiteral("chooseFolder"));
    m_refresh = new QPushButton(this);
    m_refresh->setObjectName(QStringLiteral("refreshFolder"));
    for (QPushButton* button : {m_up, m_choose, m_refresh}) {
        button->setFont(skin().GetFontStyle(CSkin::Normal13));
        button->setCursor(Qt::PointingHandCursor);
    }

    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(QStringLiteral("folderTree"));
    m_tree->setColumnCount(4);
    m_tree->setRootIsDecorated(false);
    m_tree->setAlternatingRowColors(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setSortingEnabled(true);
    m_tree->setFont(skin().GetFontStyle(CSkin::Normal13));
    m_tree->header()->setFont(skin().GetFontStyle(CSkin::Bold13));
    m_tree->header()->setStretchLastSection(false);
    m_tree->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    m_tree->header()->setSectionResizeMode(KindColumn, QHeaderView::ResizeToContents);
    m_tree->header()->setSectionResizeMode(SizeColumn, QHeaderView::ResizeToContents);
    m_tree->header()->setSectionResizeMode(ModifiedColumn, QHeaderView::ResizeToContents);

    m_summary = new QLabel(this);
    m_summary->setObjectName(QStringLiteral("folderSummary"));
    m_summary->setFont(skin().GetFontStyle(CSkin::Normal12));

    auto* top = new QHBoxLayout;
    top->setSpacing(8);
    top->addWidget(m_path, 1);
    top->addWidget(m_up);
    top->addWidget(m_refresh);
    top->addWidget(m_choose);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 14, 20, 16);
    layout->setSpacing(10);
    layout->addLayout(top);
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_summary);

    connect(m_choose, &QPushButton::clicked, this, &FolderView::chooseFolder);
    connect(m_refresh, &QPushButton::clicked, this, &FolderView::refresh);
    connect(m_up, &QPushButton::clicked, this, &FolderView::goUp);
    connect(m_tree, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        if (item && item->data(NameColumn, kFolderRole).toBool())
            setFolder(QDir(m_folder).filePath(item->text(NameColumn)));
    });

    retranslate();
}

void FolderView::retranslate()
{
    m_up->setText(tr("Up"));
    m_choose->setText(tr("Choose folder…"));
    m_refresh->setText(tr("Refresh"));
    m_tree->setHeaderLabels({tr("Name"), tr("Type"), tr("Size"), tr("Modified")});
}

void FolderView::changeEvent(QEvent* event)
{
    // A language switch installs two translators, one change event each: the texts and
    // the listing (whose kinds and summary are translated too) are redone once, after both.
    if (event->type() == QEvent::LanguageChange && !m_retranslatePending) {
        m_retranslatePending = true;
        QTimer::singleShot(0, this, [this] {
            m_retranslatePending = false;
            retranslate();
            refresh();
        });
    }
    QWidget::changeEvent(event);
}

QString FolderView::formatSize(qint64 bytes, bool partial) const
{
    double scaled = 0.0;
    const int unit = skin().GetDoubleMultiple(double(bytes), 1024.0, scaled);
    const QString number = unit == 0 ? QString::number(qRound64(scaled)) : QString::number(scaled, 'f', 1);
    return (partial ? QStringLiteral("≥ ") : QString()) + number + QLatin1Char(' ') + skin().GetTextPostfix(unit);
}

void FolderView::setFolder(const QString& path)
{
    m_folder = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    refresh();
    emit folderChanged(m_folder);
}

void FolderView::goUp()
{
    QDir dir(m_folder);
    if (dir.cdUp())
        setFolder(dir.absolutePath());
}

void FolderView::chooseFolder()
{
    const QString chosen = QFileDialog::getExistingDirectory(this, tr("Choose a folder"), m_folder);
    if (!chosen.isEmpty())
        setFolder(chosen);
}

void FolderView::refresh()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_path->setText(QDir::toNativeSeparators(m_folder));
    m_path->setToolTip(m_path->text());
    m_tree->setSortingEnabled(false);
    m_tree->clear();

    QElapsedTimer clock;
    clock.start();
    qint64 total = 0;
    bool anyPartial = false;
    const QFileInfoList entries =
        QDir(m_folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::DirsFirst);
    for (const QFileInfo& info : entries) {
        bool partial = false;
        const bool folder = info.isDir() && !info.isSymLink();
        const qint64 bytes = folder ? folderBytes(info.absoluteFilePath(), clock, &partial) : info.size();
        anyPartial = anyPartial || partial;
        total += bytes;

        auto* item = new EntryItem(m_tree);
        item->setText(NameColumn, info.fileName());
        item->setData(NameColumn, kFolderRole, folder);
        item->setText(KindColumn, folder ? tr("Folder")
                                         : info.suffix().isEmpty() ? tr("File")
                                                                   : tr("%1 file").arg(info.suffix().toUpper()));
        item->setText(SizeColumn, formatSize(bytes, partial));
        item->setData(SizeColumn, kBytesRole, bytes);
        item->setTextAlignment(SizeColumn, Qt::AlignRight | Qt::AlignVCenter);
        item->setText(ModifiedColumn, QLocale().toString(info.lastModified(), QLocale::ShortFormat));
        item->setData(ModifiedColumn, kBytesRole, info.lastModified());
        if (folder)
            item->setFont(NameColumn, skin().GetFontStyle(CSkin::Bold13));
    }

    m_tree->setSortingEnabled(true);
    m_tree->sortByColumn(SizeColumn, Qt::DescendingOrder);
    m_summary->setText(tr("%n entries, %1 in total", nullptr, entries.size()).arg(formatSize(total, anyPartial)));
    m_summary->setStyleSheet(skin().GetColorStyle(anyPartial ? CSkin::Coral : CSkin::Gray120));
    QApplication::restoreOverrideCursor();
}

bool FolderView::exportCsv(const QString& path, QString* error) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    const auto quote = [](QString text) {
        text.replace(QLatin1Char('"'), QStringLiteral("\"\""));
        return QLatin1Char('"') + text + QLatin1Char('"');
    };
    QTextStream out(&file);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    out.setCodec("UTF-8"); // Qt 6 streams write UTF-8 by default
#endif
    out << "name,type,bytes,size,modified\n";
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = m_tree->topLevelItem(i);
        out << quote(item->text(NameColumn)) << ',' << quote(item->text(KindColumn)) << ','
            << item->data(SizeColumn, kBytesRole).toLongLong() << ',' << quote(item->text(SizeColumn)) << ','
            << quote(item->data(ModifiedColumn, kBytesRole).toDateTime().toString(Qt::ISODate)) << '\n';
    }
    out.flush();
    if (file.error() != QFileDevice::NoError) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}
