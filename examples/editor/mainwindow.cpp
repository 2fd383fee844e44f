#include "mainwindow.h"

#include "textstats.h"

#include <ZVCore/ZVApplicationInfo>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QSaveFile>
#include <QtCore/QSettings>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>
#include <QtGui/QCloseEvent>
#include <QtGui/QFontDatabase>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtGui/QTextBlock>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QAction> // QtWidgets in Qt 5, QtGui in Qt 6
#include <QtWidgets/QApplication>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QStyle>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QVBoxLayout>


using ZVUIFramework::ZVApplicationInfo;

namespace {

// Larger files are refused rather than loaded: a plain-text editor is no viewer for logs
// or binaries, and a document of this size already edits slowly.
constexpr qint64 kMaxFileSize = 16 * 1024 * 1024;

const char kRecentFilesKey[] = "recentFiles";
const char kWindowStateKey[] = "window/state";

// The platform's shortcuts for \a key; \a fallback where the platform has none (Save As
// and Quit have none on Windows).
void setStandardShortcut(QAction* action, QKeySequence::StandardKey key, const QString& fallback = QString())
{
    QList<QKeySequence> shortcuts = QKeySequence::keyBindings(key);
    if (shortcuts.isEmpty() && !fallback.isEmpty())
        shortcuts.append(QKeySequence(fallback));
    action->setShortcuts(shortcuts);
}

// Cut, copy and paste have no standard pictures in QStyle. These are drawn on a 16-unit
// grid in the palette's button text colours, so that they suit the light and the dark
// skin alike; the disabled form is drawn too, since a generated one hardly differs
// from a dark glyph.
template <typename Draw>
QIcon drawnIcon(const QPalette& palette, Draw draw)
{
    QIcon icon;
    for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled}) {
        const QColor colour = palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active,
                                            QPalette::ButtonText);
        for (const int side : {16, 24, 32, 48}) {
            QPixmap pixmap(side, side);
            pixmap.fill(Qt::transparent);
            QPainter painter(&pixmap);
            painter.setRenderHint(QPainter::Antialiasing, true);
            painter.scale(side / 16.0, side / 16.0);
            painter.setPen(QPen(colour, 1.25, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.setBrush(Qt::NoBrush);
            draw(painter, colour);
            painter.end();
            icon.addPixmap(pixmap, mode);
        }
    }
    return icon;
}

QIcon cutIcon(const QPalette& palette)
{
    return drawnIcon(palette, [](QPainter& g, const QColor&) {
        g.drawEllipse(QPointF(4.5, 12.0), 2.2, 2.2);
        g.drawEllipse(QPointF(11.5, 12.0), 2.2, 2.2);
        g.drawLine(QPointF(5.9, 10.2), QPointF(11.2, 1.8));
        g.drawLine(QPointF(10.1, 10.2), QPointF(4.8, 1.8));
    });
}

QIcon copyIcon(const QPalette& palette)
{
    return drawnIcon(palette, [](QPainter& g, const QColor&) {
        g.drawRoundedRect(QRectF(2.0, 1.5, 7.5, 9.5), 1.2, 1.2);
        // The front sheet hides the back one where they overlap.
        const QRectF front(6.5, 5.0, 7.5, 9.5);
        g.save();
        g.setCompositionMode(QPainter::CompositionMode_Clear);
        g.fillRect(front.adjusted(-1.0, -1.0, 1.0, 1.0), Qt::transparent);
        g.restore();
        g.drawRoundedRect(front, 1.2, 1.2);
    });
}

QIcon pasteIcon(const QPalette& palette)
{
    return drawnIcon(palette, [](QPainter& g, const QColor& colour) {
        g.drawRoundedRect(QRectF(2.5, 2.5, 11.0, 12.5), 1.5, 1.5);
        g.setBrush(colour);
        g.drawRoundedRect(QRectF(5.5, 1.0, 5.0, 3.0), 0.8, 0.8);
        g.drawLine(QPointF(5.5, 8.0), QPointF(10.5, 8.0));
        g.drawLine(QPointF(5.5, 11.0), QPointF(10.5, 11.0));
    });
}

QString productName()
{
    const QString title = ZVApplicationInfo::GetInstance()->GetAppTitle();
    return title.isEmpty() ? QCoreApplication::applicationName() : title;
}

} // namespace

MainWindow::MainWindow(bool interactive, QWidget* parent)
    : ZVCoreWindow(parent)
    , m_interactive(interactive)
{
    m_editor = new QPlainTextEdit(this);
    m_editor->setObjectName(QStringLiteral("editor"));
    // Notes are often Markdown or code: a fixed font keeps indentation and tables aligned.
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (QApplication::font().pointSizeF() > 0)
        font.setPointSizeF(QApplication::font().pointSizeF());
    m_editor->setFont(font);
    m_editor->setTabStopDistance(4 * QFontMetricsF(font).horizontalAdvance(QLatin1Char(' ')));
    setCentralWidget(m_editor);

    // Counting and outlining a long document on every key press would slow typing down;
    // the panels follow a moment after the typing stops.
    m_refreshTimer = new QTimer(this);
    m_refreshTimer->setSingleShot(true);
    m_refreshTimer->setInterval(200);
    connect(m_refreshTimer, &QTimer::timeout, this, &MainWindow::refreshPanels);
    connect(m_editor->document(), &QTextDocument::contentsChanged, m_refreshTimer, qOverload<>(&QTimer::start));
    connect(m_editor->document(), &QTextDocument::modificationChanged, this, &MainWindow::updateTitle);
    connect(m_editor, &QPlainTextEdit::cursorPositionChanged, this, &MainWindow::updatePosition);

    createActions();
    createMenus();
    createToolBars();
    createDocks();
    createStatusBar();

    if (m_interactive)
        m_recent = recentFiles();
    rebuildRecentMenu();

    retranslate();
    setCurrentFile(QString());

    SetResizeable(true);
    setMinimumSize(640, 440);
    resize(1000, 700);
    resizeDocks({m_outlineDock, m_statsDock}, {220, 200}, Qt::Horizontal);
    CenterWindow();

    if (m_interactive)
        restoreState(QSettings().value(QLatin1String(kWindowStateKey)).toByteArray());
    m_editor->setFocus();
}

void MainWindow::createActions()
{
    QStyle* style = this->style();

    m_newAction = new QAction(style->standardIcon(QStyle::SP_FileIcon), QString(), this);
    setStandardShortcut(m_newAction, QKeySequence::New);
    connect(m_newAction, &QAction::triggered, this, &MainWindow::newFile);

    m_openAction = new QAction(style->standardIcon(QStyle::SP_DialogOpenButton), QString(), this);
    setStandardShortcut(m_openAction, QKeySequence::Open);
    connect(m_openAction, &QAction::triggered, this, &MainWindow::open);

    m_saveAction = new QAction(style->standardIcon(QStyle::SP_DialogSaveButton), QString(), this);
    setStandardShortcut(m_saveAction, QKeySequence::Save);
    connect(m_saveAction, &QAction::triggered, this, &MainWindow::save);

    m_saveAsAction = new QAction(this);
    setStandardShortcut(m_saveAsAction, QKeySequence::SaveAs, QStringLiteral("Ctrl+Shift+S"));
    connect(m_saveAsAction, &QAction::triggered, this, &MainWindow::saveAs);

    m_clearRecentAction = new QAction(this);
    connect(m_clearRecentAction, &QAction::triggered, this, &MainWindow::clearRecentFiles);

    m_quitAction = new QAction(style->standardIcon(QStyle::SP_DialogCloseButton), QString(), this);
    setStandardShortcut(m_quitAction, QKeySequence::Quit, QStringLiteral("Ctrl+Q"));
    m_quitAction->setMenuRole(QAction::QuitRole);
    connect(m_quitAction, &QAction::triggered, this, &QWidget::close);

    // Back and forward arrows follow the layout direction, as undo and redo should.
    m_undoAction = new QAction(style->standardIcon(QStyle::SP_ArrowBack), QString(), this);
    setStandardShortcut(m_undoAction, QKeySequence::Undo);
    m_undoAction->setEnabled(false);
    connect(m_undoAction, &QAction::triggered, m_editor, &QPlainTextEdit::undo);
    connect(m_editor, &QPlainTextEdit::undoAvailable, m_undoAction, &QAction::setEnabled);

    m_redoAction = new QAction(style->standardIcon(QStyle::SP_ArrowForward), QString(), this);
    setStandardShortcut(m_redoAction, QKeySequence::Redo);
    m_redoAction->setEnabled(false);
    connect(m_redoAction, &QAction::triggered, m_editor, &QPlainTextEdit::redo);
    connect(m_editor, &QPlainTextEdit::redoAvailable, m_redoAction, &QAction::setEnabled);

    // The desktop's theme may have clipboard pictures; else they are drawn here.
    const QPalette ink = palette();
    m_cutAction = new QAction(QIcon::fromTheme(QStringLiteral("edit-cut"), cutIcon(ink)), QString(), this);
    setStandardShortcut(m_cutAction, QKeySequence::Cut);
    m_cutAction->setEnabled(false);
    connect(m_cutAction, &QAction::triggered, m_editor, &QPlainTextEdit::cut);
    connect(m_editor, &QPlainTextEdit::copyAvailable, m_cutAction, &QAction::setEnabled);

    m_copyAction = new QAction(QIcon::fromTheme(QStringLiteral("edit-copy"), copyIcon(ink)), QString(), this);
    setStandardShortcut(m_copyAction, QKeySequence::Copy);
    m_copyAction->setEnabled(false);
    connect(m_copyAction, &QAction::triggered, m_editor, &QPlainTextEdit::copy);
    connect(m_editor, &QPlainTextEdit::copyAvailable, m_copyAction, &QAction::setEnabled);

    m_pasteAction = new QAction(QIcon::fromTheme(QStringLiteral("edit-paste"), pasteIcon(ink)), QString(), this);
    setStandardShortcut(m_pasteAction, QKeySequence::Paste);
    connect(m_pasteAction, &QAction::triggered, m_editor, &QPlainTextEdit::paste);

    m_selectAllAction = new QAction(this);
    setStandardShortcut(m_selectAllAction, QKeySequence::SelectAll);
    connect(m_selectAllAction, &QAction::triggered, m_editor, &QPlainTextEdit::selectAll);

    m_aboutAction = new QAction(this);
    m_aboutAction->setMenuRole(QAction::AboutRole);
    connect(m_aboutAction, &QAction::triggered, this, &MainWindow::about);
}

void MainWindow::createMenus()
{
    // The core window's menu bar: it stays below the frame's title bar.
    QMenuBar* bar = menuBar();

    m_fileMenu = bar->addMenu(QString());
    m_fileMenu->addAction(m_newAction);
    m_fileMenu->addAction(m_openAction);
    m_recentMenu = m_fileMenu->addMenu(QString());
    m_recentMenu->setObjectName(QStringLiteral("recentFilesMenu"));
    m_fileMenu->addSeparator();
    m_fileMenu->addAction(m_saveAction);
    m_fileMenu->addAction(m_saveAsAction);
    m_fileMenu->addSeparator();
    m_fileMenu->addAction(m_quitAction);

    m_editMenu = bar->addMenu(QString());
    m_editMenu->addAction(m_undoAction);
    m_editMenu->addAction(m_redoAction);
    m_editMenu->addSeparator();
    m_editMenu->addAction(m_cutAction);
    m_editMenu->addAction(m_copyAction);
    m_editMenu->addAction(m_pasteAction);
    m_editMenu->addSeparator();
    m_editMenu->addAction(m_selectAllAction);

    // Filled once the docks and tool bars exist.
    m_viewMenu = bar->addMenu(QString());

    m_helpMenu = bar->addMenu(QString());
    m_helpMenu->addAction(m_aboutAction);
}

void MainWindow::createToolBars()
{
    m_fileToolBar = new QToolBar(this);
    m_fileToolBar->setObjectName(QStringLiteral("fileToolBar"));
    m_fileToolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_fileToolBar->addAction(m_newAction);
    m_fileToolBar->addAction(m_openAction);
    m_fileToolBar->addAction(m_saveAction);
    addToolBar(Qt::TopToolBarArea, m_fileToolBar);

    m_editToolBar = new QToolBar(this);
    m_editToolBar->setObjectName(QStringLiteral("editToolBar"));
    // Known by their pictures (and named in their tool tips): pictures alone keep both tool
    // bars on one row in every language.
    m_editToolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_editToolBar->addAction(m_undoAction);
    m_editToolBar->addAction(m_redoAction);
    m_editToolBar->addSeparator();
    m_editToolBar->addAction(m_cutAction);
    m_editToolBar->addAction(m_copyAction);
    m_editToolBar->addAction(m_pasteAction);
    addToolBar(Qt::TopToolBarArea, m_editToolBar);
}

void MainWindow::createDocks()
{
    const QDockWidget::DockWidgetFeatures features =
        QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable | QDockWidget::DockWidgetClosable;

    m_outline = new QListWidget(this);
    m_outline->setObjectName(QStringLiteral("outlineList"));
    // Long headings are shortened to the dock's width (the tool tip has them in full)
    // rather than scrolled sideways.
    m_outline->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_outline->setTextElideMode(Qt::ElideRight);
    connect(m_outline, &QListWidget::itemClicked, this, &MainWindow::goToHeading);
    connect(m_outline, &QListWidget::itemActivated, this, &MainWindow::goToHeading);

    m_outlineDock = new QDockWidget(this);
    m_outlineDock->setObjectName(QStringLiteral("outlineDock"));
    m_outlineDock->setFeatures(features);
    m_outlineDock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    m_outlineDock->setWidget(m_outline);
    addDockWidget(Qt::LeftDockWidgetArea, m_outlineDock);

    auto* stats = new QWidget(this);
    stats->setObjectName(QStringLiteral("statsPanel"));
    auto* form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    form->setFormAlignment(Qt::AlignLeading | Qt::AlignTop);
    const auto addRow = [&](QLabel*& caption, QLabel*& value, const char* name) {
        caption = new QLabel(stats);
        value = new QLabel(stats);
        value->setObjectName(QLatin1String(name));
        value->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        form->addRow(caption, value);
    };
    addRow(m_wordsCaption, m_words, "wordCount");
    addRow(m_charactersCaption, m_characters, "characterCount");
    addRow(m_linesCaption, m_lines, "lineCount");
    auto* column = new QVBoxLayout(stats);
    column->addLayout(form);
    column->addStretch(1);

    m_statsDock = new QDockWidget(this);
    m_statsDock->setObjectName(QStringLiteral("statsDock"));
    m_statsDock->setFeatures(features);
    m_statsDock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    m_statsDock->setWidget(stats);
    addDockWidget(Qt::RightDockWidgetArea, m_statsDock);

    m_viewMenu->addAction(m_outlineDock->toggleViewAction());
    m_viewMenu->addAction(m_statsDock->toggleViewAction());
    m_viewMenu->addSeparator();
    m_viewMenu->addAction(m_fileToolBar->toggleViewAction());
    m_viewMenu->addAction(m_editToolBar->toggleViewAction());
}

void MainWindow::createStatusBar()
{
    m_fileLabel = new QLabel(this);
    m_fileLabel->setObjectName(QStringLiteral("fileLabel"));
    m_fileLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_positionLabel = new QLabel(this);
    m_positionLabel->setObjectName(QStringLiteral("positionLabel"));
    // The frame resizes the window from its borders; a grip in the corner would only
    // duplicate that.
    statusBar()->setSizeGripEnabled(false);
    // The file on the left with room to spare, the position at the far end.
    statusBar()->addWidget(m_fileLabel, 1);
    statusBar()->addPermanentWidget(m_positionLabel);
}

void MainWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    ZVCoreWindow::changeEvent(event);
}

void MainWindow::retranslate()
{
    m_fileMenu->setTitle(tr("&File"));
    m_newAction->setText(tr("&New"));
    m_newAction->setStatusTip(tr("Starts an empty document"));
    m_openAction->setText(tr("&Open…"));
    // A tool bar button is named without the dots that announce a dialog in a menu.
    m_openAction->setIconText(tr("Open"));
    m_openAction->setStatusTip(tr("Opens a document"));
    m_recentMenu->setTitle(tr("Open &Recent"));
    m_clearRecentAction->setText(tr("&Clear List"));
    m_saveAction->setText(tr("&Save"));
    m_saveAction->setStatusTip(tr("Saves the document"));
    m_saveAsAction->setText(tr("Save &As…"));
    m_quitAction->setText(tr("&Quit"));

    m_editMenu->setTitle(tr("&Edit"));
    m_undoAction->setText(tr("&Undo"));
    m_redoAction->setText(tr("&Redo"));
    m_cutAction->setText(tr("Cu&t"));
    m_copyAction->setText(tr("&Copy"));
    m_pasteAction->setText(tr("&Paste"));
    m_selectAllAction->setText(tr("Select &All"));

    m_viewMenu->setTitle(tr("&View"));
    m_helpMenu->setTitle(tr("&Help"));
    m_aboutAction->setText(tr("&About %1").arg(productName()));

    // The toggle actions take the titles of their docks and tool bars; they get their
    // mnemonics afterwards, so that the titles themselves show none.
    m_fileToolBar->setWindowTitle(tr("File"));
    m_fileToolBar->toggleViewAction()->setText(tr("&File Tool Bar"));
    m_editToolBar->setWindowTitle(tr("Edit"));
    m_editToolBar->toggleViewAction()->setText(tr("&Edit Tool Bar"));
    m_outlineDock->setWindowTitle(tr("Outline"));
    m_outlineDock->toggleViewAction()->setText(tr("&Outline"));
    m_statsDock->setWindowTitle(tr("Statistics"));
    m_statsDock->toggleViewAction()->setText(tr("S&tatistics"));

    m_wordsCaption->setText(tr("Words:"));
    m_charactersCaption->setText(tr("Characters:"));
    m_linesCaption->setText(tr("Lines:"));

    updateTitle();
    updatePosition();
    refreshPanels();
}

QString MainWindow::documentName() const
{
    return m_filePath.isEmpty() ? tr("Untitled") : QFileInfo(m_filePath).fileName();
}

void MainWindow::updateTitle()
{
    const bool modified = m_editor->document()->isModified();
    const QString name = documentName();
    const QString product = productName();

    // The system's title (task bar, window list): "[*]" becomes the modified marker.
    setWindowModified(modified);
    setWindowTitle(QStringLiteral("%1[*] \u2014 %2").arg(name, product));

    // The frame's title bar shows a label of its own rather than the window title; it
    // shows the document too, shortened so that a long name cannot widen the window.
    if (QWidget* titleBar = GetTitleWidget()) {
        if (auto* label = titleBar->findChild<QLabel*>(QStringLiteral("label_title"))) {
            const QString shown = label->fontMetrics().elidedText(name, Qt::ElideMiddle, 360);
            label->setText(QStringLiteral("%1%2 \u2014 %3").arg(shown, modified ? QStringLiteral("*") : QString(), product));
            label->setToolTip(m_filePath.isEmpty() ? name : QDir::toNativeSeparators(m_filePath));
        }
    }

    m_fileLabel->setText(m_filePath.isEmpty() ? name : QDir::toNativeSeparators(m_filePath));
    m_saveAction->setEnabled(modified || m_filePath.isEmpty());
}

void MainWindow::updatePosition()
{
    const QTextCursor cursor = m_editor->textCursor();
    m_positionLabel->setText(tr("Line %1, Column %2").arg(cursor.blockNumber() + 1).arg(cursor.positionInBlock() + 1));
    // Until the panels follow the latest typing, the outline's lines may be out of date.
    if (!m_refreshTimer->isActive())
        selectCurrentHeading();
}

void MainWindow::refreshPanels()
{
    m_refreshTimer->stop();
    const QTextDocument& document = *m_editor->document();

    const TextStats::Counts counts = TextStats::count(document);
    const QLocale locale;
    m_words->setText(locale.toString(counts.words));
    m_characters->setText(locale.toString(counts.characters));
    m_lines->setText(locale.toString(counts.lines));

    m_outline->clear();
    const QVector<TextStats::Heading> headings = TextStats::headings(document);
    for (const TextStats::Heading& heading : headings) {
        // Deeper headings step in, up to the sixth level Markdown knows.
        const int indent = 3 * (qBound(1, heading.level, 6) - 1);
        auto* item = new QListWidgetItem(QString(indent, QLatin1Char(' ')) + heading.title, m_outline);
        item->setData(Qt::UserRole, heading.line);
        item->setToolTip(heading.title);
    }
    if (headings.isEmpty()) {
        auto* item = new QListWidgetItem(tr("No headings"), m_outline);
        // Shown greyed and never selected: it names no line.
        item->setFlags(Qt::NoItemFlags);
    }
    selectCurrentHeading();
}

void MainWindow::selectCurrentHeading()
{
    // The outline marks the section the cursor is in: the last heading at or above it.
    const int line = m_editor->textCursor().blockNumber();
    int row = -1;
    for (int i = 0; i < m_outline->count(); ++i) {
        const QListWidgetItem* item = m_outline->item(i);
        if (!(item->flags() & Qt::ItemIsEnabled) || item->data(Qt::UserRole).toInt() > line)
            break;
        row = i;
    }
    if (row < 0) {
        m_outline->setCurrentItem(nullptr);
        m_outline->clearSelection();
        return;
    }
    m_outline->setCurrentRow(row);
    m_outline->scrollToItem(m_outline->item(row));
}

void MainWindow::goToHeading(QListWidgetItem* item)
{
    if (!item || !(item->flags() & Qt::ItemIsEnabled))
        return;
    const QTextBlock block = m_editor->document()->findBlockByNumber(item->data(Qt::UserRole).toInt());
    if (!block.isValid())
        return;
    m_editor->setTextCursor(QTextCursor(block));
    m_editor->centerCursor();
    m_editor->setFocus();
}

void MainWindow::reportError(const QString& title, const QString& message)
{
    if (m_interactive)
        QMessageBox::warning(this, title, message);
    else
        QTextStream(stderr) << "zvcore-editor: " << message << "\n";
}

bool MainWindow::openFile(const QString& path)
{
    const QFileInfo info(path);
    QString reason;
    QByteArray bytes;
    if (!info.exists()) {
        reason = tr("The file does not exist.");
    } else if (info.isDir()) {
        reason = tr("It is a folder.");
    } else if (!info.isFile()) {
        // A pipe or a device would keep the editor waiting for data that may never come.
        reason = tr("It is not a regular file.");
    } else if (info.size() > kMaxFileSize) {
        reason = tr("It is larger than %1 MB.").arg(kMaxFileSize / (1024 * 1024));
    } else {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            reason = file.errorString();
        } else {
            bytes = file.readAll();
            if (file.error() != QFileDevice::NoError)
                reason = file.errorString();
        }
    }
    if (!reason.isEmpty()) {
        reportError(tr("Open"), tr("\"%1\" could not be opened. %2").arg(QDir::toNativeSeparators(path), reason));
        return false;
    }

    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes.remove(0, 3);
    QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    // Text that is not UTF-8 is read byte for byte, so that nothing turns into
    // replacement characters that saving would then write back.
    if (text.toUtf8() != bytes)
        text = QString::fromLatin1(bytes.constData(), bytes.size());

    m_editor->setPlainText(text);
    setCurrentFile(info.absoluteFilePath());
    addRecentFile(info.absoluteFilePath());
    refreshPanels();
    return true;
}

bool MainWindow::saveFile(const QString& path)
{
    // Written beside the old file and renamed over it: a failed save leaves the old file.
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(m_editor->toPlainText().toUtf8());
        if (file.commit()) {
            setCurrentFile(QFileInfo(path).absoluteFilePath());
            addRecentFile(m_filePath);
            statusBar()->showMessage(tr("Saved"), 2000);
            return true;
        }
    }
    reportError(tr("Save"), tr("\"%1\" could not be saved. %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    return false;
}

void MainWindow::setCurrentFile(const QString& path)
{
    m_filePath = path;
    m_editor->document()->setModified(false);
    updateTitle();
}

bool MainWindow::maybeSave()
{
    if (!m_editor->document()->isModified() || !m_interactive)
        return true;
    const QMessageBox::StandardButton answer = QMessageBox::warning(
        this, tr("Unsaved Changes"),
        tr("\"%1\" has been changed. Do you want to save the changes?").arg(documentName()),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return save();
    return answer == QMessageBox::Discard;
}

void MainWindow::newFile()
{
    if (!maybeSave())
        return;
    m_editor->clear();
    setCurrentFile(QString());
    refreshPanels();
}

void MainWindow::open()
{
    if (!maybeSave())
        return;
    const QString start = m_filePath.isEmpty() ? QDir::homePath() : QFileInfo(m_filePath).absolutePath();
    const QString path = QFileDialog::getOpenFileName(this, tr("Open"), start,
                                                      tr("Text files (*.txt *.md);;All files (*)"));
    if (!path.isEmpty())
        openFile(path);
}

bool MainWindow::save()
{
    return m_filePath.isEmpty() ? saveAs() : saveFile(m_filePath);
}

bool MainWindow::saveAs()
{
    const QString suggested = m_filePath.isEmpty() ? QDir::home().filePath(tr("Untitled") + QStringLiteral(".md"))
                                                   : m_filePath;
    const QString path = QFileDialog::getSaveFileName(this, tr("Save As"), suggested,
                                                      tr("Text files (*.txt *.md);;All files (*)"));
    return !path.isEmpty() && saveFile(path);
}

QStringList MainWindow::recentFiles() const
{
    QStringList files = QSettings().value(QLatin1String(kRecentFilesKey)).toStringList();
    files.removeAll(QString());
    files.removeDuplicates();
    while (files.size() > kMaxRecentFiles)
        files.removeLast();
    return files;
}

void MainWindow::setRecentFiles(const QStringList& files)
{
    m_recent = files;
    if (m_interactive)
        QSettings().setValue(QLatin1String(kRecentFilesKey), m_recent);
    rebuildRecentMenu();
}

void MainWindow::addRecentFile(const QString& path)
{
    QStringList files = m_recent;
    files.removeAll(path);
    files.prepend(path);
    while (files.size() > kMaxRecentFiles)
        files.removeLast();
    setRecentFiles(files);
}

void MainWindow::clearRecentFiles()
{
    setRecentFiles(QStringList());
}

void MainWindow::rebuildRecentMenu()
{
    // Actions the menu owns go with clear(); the window's "Clear List" stays.
    m_recentMenu->clear();
    for (int i = 0; i < m_recent.size(); ++i) {
        const QString& path = m_recent.at(i);
        QString name = QFileInfo(path).fileName();
        name.replace(QLatin1Char('&'), QStringLiteral("&&"));
        QAction* action = m_recentMenu->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(name));
        action->setData(path);
        action->setStatusTip(QDir::toNativeSeparators(path));
        action->setToolTip(QDir::toNativeSeparators(path));
        connect(action, &QAction::triggered, this, &MainWindow::openRecent);
    }
    m_recentMenu->addSeparator();
    m_recentMenu->addAction(m_clearRecentAction);
    m_recentMenu->setEnabled(!m_recent.isEmpty());
}

void MainWindow::openRecent()
{
    auto* action = qobject_cast<QAction*>(sender());
    if (!action || !maybeSave())
        return;
    const QString path = action->data().toString();
    if (!openFile(path)) {
        // Gone or unreadable: it would only fail again.
        QStringList files = m_recent;
        files.removeAll(path);
        setRecentFiles(files);
    }
}

void MainWindow::about()
{
    // The frame's own About dialog, through its entry in the title menu, so that both
    // ways show the same product, version and links.
    if (QWidget* titleBar = GetTitleWidget()) {
        if (auto* menu = titleBar->findChild<QMenu*>(QStringLiteral("titleMenu"))) {
            const QList<QAction*> actions = menu->actions();
            for (QAction* action : actions) {
                if (action->property("key").toString().compare(QLatin1String("About"), Qt::CaseInsensitive) == 0) {
                    action->trigger();
                    return;
                }
            }
        }
    }
    // The product's link files may leave the entry out.
    QMessageBox::about(this, tr("About %1").arg(productName()),
                       tr("%1 %2\n\nA small editor for plain-text notes.")
                           .arg(productName(), QCoreApplication::applicationVersion()));
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!maybeSave()) {
        event->ignore();
        return;
    }
    if (m_interactive)
        QSettings().setValue(QLatin1String(kWindowStateKey), saveState());
    event->accept();
}
