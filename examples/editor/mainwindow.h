// The editor's frameless main window: the frame's title bar, then a menu bar, two tool
// bars, the text with an outline and a statistics dock beside it, and a status bar.
#ifndef NOTES_MAINWINDOW_H
#define NOTES_MAINWINDOW_H

#include <ZVCore/ZVCoreWindow>

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtCore/QStringList>

class QAction;
class QDockWidget;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QMenu;
class QPlainTextEdit;
class QTimer;
class QToolBar;

class MainWindow : public ZVCoreWindow
{
    Q_OBJECT
public:
    static constexpr int kMaxRecentFiles = 5;

    /// An interactive window asks before discarding changes, reports errors in message
    /// boxes and remembers recent files and the layout of its docks and tool bars. One
    /// that is not (the --screenshot mode) writes errors to standard error and neither
    /// reads nor writes the settings, so that a picture does not depend on, or change,
    /// what the user did before.
    explicit MainWindow(bool interactive, QWidget* parent = nullptr);

    bool isInteractive() const { return m_interactive; }

    /// Opens \a path (absolute). On failure the current document stays and the reason is
    /// reported as setInteractive() describes.
    bool openFile(const QString& path);

    QString filePath() const { return m_filePath; }


protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private slots:
    void newFile();
    void open();
    bool save();
    bool saveAs();
    void openRecent();
    void clearRecentFiles();
    void about();
    void refreshPanels();
    void updatePosition();
    void updateTitle();
    void goToHeading(QListWidgetItem* item);

private:
    void createActions();
    void createMenus();
    void createToolBars();
    void createDocks();
    void createStatusBar();
    void retranslate();
    void selectCurrentHeading();

    bool maybeSave();
    bool saveFile(const QString& path);
    void setCurrentFile(const QString& path);
    void reportError(const QString& title, const QString& message);

    QStringList recentFiles() const;
    void setRecentFiles(const QStringList& files);
    void addRecentFile(const QString& path);
    void rebuildRecentMenu();

    QString documentName() const;

    bool m_interactive = true;
    QString m_filePath;
    QStringList m_recent;   // the list for this window; saved only when interactive

    QPlainTextEdit* m_editor = nullptr;
    QTimer* m_refreshTimer = nullptr;

    QMenu* m_fileMenu = nullptr;
    QMenu* m_recentMenu = nullptr;
    QMenu* m_editMenu = nullptr;
    QMenu* m_viewMenu = nullptr;
    QMenu* m_helpMenu = nullptr;
    QToolBar* m_fileToolBar = nullptr;
    QToolBar* m_editToolBar = nullptr;

    QAction* m_newAction = nullptr;
    QAction* m_openAction = nullptr;
    QAction* m_saveAction = nullptr;
    QAction* m_saveAsAction = nullptr;
    QAction* m_clearRecentAction = nullptr;
    QAction* m_quitAction = nullptr;
    QAction* m_undoAction = nullptr;
    QAction* m_redoAction = nullptr;
    QAction* m_cutAction = nullptr;
    QAction* m_copyAction = nullptr;
    QAction* m_pasteAction = nullptr;
    QAction* m_selectAllAction = nullptr;
    QAction* m_aboutAction = nullptr;

    QDockWidget* m_outlineDock = nullptr;
    QListWidget* m_outline = nullptr;
    QDockWidget* m_statsDock = nullptr;
    QLabel* m_wordsCaption = nullptr;
    QLabel* m_charactersCaption = nullptr;
    QLabel* m_linesCaption = nullptr;
    QLabel* m_words = nullptr;
    QLabel* m_characters = nullptr;
    QLabel* m_lines = nullptr;

    QLabel* m_positionLabel = nullptr;
    QLabel* m_fileLabel = nullptr;
};

#endif // NOTES_MAINWINDOW_H
