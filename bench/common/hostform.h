// The widgets of a typical host window, in plain Qt, so that a window of the frame and
// a bare Qt window can carry exactly the same ones.
#ifndef ZVBENCH_HOSTFORM_H
#define ZVBENCH_HOSTFORM_H

#include <QtWidgets/QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QCheckBox;
class QTreeWidget;

// A folder-listing form: a path row with three buttons, a filter row, a tree of 40
// entries in three columns and a summary line. It retranslates its texts on every
// language change, as a host's forms do.
class HostForm : public QWidget
{
    Q_OBJECT
public:
    explicit HostForm(QWidget* parent = nullptr);

    // How often the texts were set: once at construction, then per language change.
    int retranslations() const { return m_retranslations; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();

    QLabel* m_path = nullptr;
    QPushButton* m_up = nullptr;
    QPushButton* m_choose = nullptr;
    QPushButton* m_refresh = nullptr;
    QLabel* m_filterLabel = nullptr;
    QLineEdit* m_filter = nullptr;
    QCheckBox* m_hidden = nullptr;
    QTreeWidget* m_tree = nullptr;
    QLabel* m_summary = nullptr;
    int m_retranslations = 0;
};

// What a bare Qt window puts where the frame has its title bar: a logo, a title, a
// separator and five buttons, in the same sizes.
class BareTitle : public QWidget
{
    Q_OBJECT
public:
    explicit BareTitle(QWidget* parent = nullptr);
};

#endif // ZVBENCH_HOSTFORM_H
