// The central widget of the demo: the entries of one folder with the room they take.
#ifndef FOLDERLENS_FOLDERVIEW_H
#define FOLDERLENS_FOLDERVIEW_H

#include <QtCore/QString>
#include <QtWidgets/QWidget>

class QLabel;
class QPushButton;
class QTreeWidget;

class FolderView : public QWidget
{
    Q_OBJECT
public:
    explicit FolderView(QWidget* parent = nullptr);

    QString folder() const { return m_folder; }
    void setFolder(const QString& path);
    /// Writes the listing as comma-separated values; false with \a error set on failure.
    bool exportCsv(const QString& path, QString* error) const;

signals:
    void folderChanged(const QString& path);

public slots:
    void chooseFolder();
    void refresh();
    void goUp();

protected:
    void changeEvent(QEvent* event) override;

private:
    QString formatSize(qint64 bytes, bool partial) const;
    void retranslate();

    QString m_folder;
    bool m_retranslatePending = false;
    QLabel* m_path = nullptr;
    QLabel* m_summary = nullptr;
    QPushButton* m_up = nullptr;
    QPushButton* m_choose = nullptr;
    QPushButton* m_refresh = nullptr;
    QTreeWidget* m_tree = nullptr;
};

#endif // FOLDERLENS_FOLDERVIEW_H
