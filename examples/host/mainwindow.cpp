#include "mainwindow.h"

#include "folderview.h"

#include <ZVCore/ZVCustomEvent>
#include <ZVCore/ZVCustomEventSendObj>

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace {
constexpr int kLanguageChangedEvent = 1002;
constexpr int kButtonReleasedEvent = 1003;
} // namespace

MainWindow::MainWindow(const QString& folder) : ZVCoreWindow(nullptr)
{
    m_view = new FolderView(this);
    setCentralWidget(m_view);
    SetResizeable(true);
    setMinimumSize(760, 520);
    resize(1000, 680);
    CenterWindow();

    // 1002 is attached by the frame; the others are ours to ask for.
    ZVCustomEventSendObj* bus = ZVCustomEventSendObj::GetInstance();
    bus->Attach(kButtonReleasedEvent, this);
    bus->Attach(kExportEvent, this);

    connect(m_view, &FolderView::folderChanged, this, &MainWindow::retranslate);
    m_view->setFolder(folder);

    // The title bar tells when its menu has been (re)filled: at start and after every
    // language change.
    if (QWidget* title = GetTitleWidget())
        connect(title, SIGNAL(signalMenuInited()), this, SLOT(logTitleMenu()));
    logTitleMenu();
}

void MainWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    ZVCoreWindow::changeEvent(event);
}

void MainWindow::retranslate()
{
    setWindowTitle(tr("Folder sizes: %1").arg(QDir::toNativeSeparators(m_view->folder())));
}

void MainWindow::logTitleMenu()
{
    QWidget* title = GetTitleWidget();
    const QMenu* menu = title ? title->findChild<QMenu*>(QStringLiteral("titleMenu")) : nullptr;
    if (!menu)
        return;
    QStringList captions;
    for (const QAction* action : menu->actions()) {
        if (!action->isSeparator())
            captions << action->text();
    }
    qInfo().noquote() << "Folder Lens: title menu:" << captions.join(QStringLiteral(" | "));
}

void MainWindow::customEvent(QEvent* event)
{
    const int id = int(event->type());
    if (id == kLanguageChangedEvent) {
        // Posted: Qt's queue frees the event. The dialog is shown after this returns,
        // so the language dialog that posted it has closed by then.
        QTimer::singleShot(0, this, &MainWindow::offerRestart);
    } else if (id == kButtonReleasedEvent) {
        const auto* released = static_cast<ZVCustomEvent*>(event);
        qInfo().noquote() << "Folder Lens: title button released:" << released->source << released->name;
    } else if (id == kExportEvent) {
        // Sent, not posted: the receiver frees the event once it is done with it.
        auto* sent = static_cast<ZVCustomEvent*>(event);
        QTimer::singleShot(0, [sent] { delete sent; });
        QTimer::singleShot(0, this, &MainWindow::exportListing);
        return;
    }
    ZVCoreWindow::customEvent(event);
}

void MainWindow::offerRestart()
{
    QMessageBox box(this);
    box.setIcon(QMessageBox::Question);
    box.setWindowTitle(tr("Language changed"));
    box.setText(tr("The new language is used everywhere after a restart. Restart Folder Lens now?"));
    QPushButton* restart = box.addButton(tr("Restart now"), QMessageBox::AcceptRole);
    box.addButton(tr("Later"), QMessageBox::RejectRole);
    box.setDefaultButton(restart);
    box.exec();
    if (box.clickedButton() != restart)
        return;
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (QProcess::startDetached(QCoreApplication::applicationFilePath(), arguments))
        QCoreApplication::quit();
    else
        QMessageBox::warning(this, tr("Restart"), tr("Folder Lens could not be started again."));
}

void MainWindow::exportListing()
{
    const QString suggested = QDir::home().filePath(QDir(m_view->folder()).dirName() + QStringLiteral(".csv"));
    const QString path = QFileDialog::getSaveFileName(this, tr("Export listing"), suggested,
                                                      tr("Comma-separated values (*.csv)"));
    if (path.isEmpty())
        return;
    QString error;
    if (!m_view->exportCsv(path, &error))
        QMessageBox::warning(this, tr("Export listing"), tr("The listing could not be written: %1").arg(error));
    else
        qInfo().noquote() << "Folder Lens: listing exported to" << path;
}
