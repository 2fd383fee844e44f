// The demo's frameless main window: the frame's title bar above a FolderView.
#ifndef FOLDERLENS_MAINWINDOW_H
#define FOLDERLENS_MAINWINDOW_H

#include <ZVCore/ZVCoreWindow>

class FolderView;

class MainWindow : public ZVCoreWindow
{
    Q_OBJECT
public:
    /// Event of the title menu's "Export" entry, named in the link files.
    static constexpr int kExportEvent = 61000;

    explicit MainWindow(const QString& folder);
    FolderView* folderView() const { return m_view; }

protected:
    void customEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private slots:
    void logTitleMenu();

private:
    void retranslate();
    void offerRestart();
    void exportListing();

    FolderView* m_view = nullptr;
};

#endif // FOLDERLENS_MAINWINDOW_H
