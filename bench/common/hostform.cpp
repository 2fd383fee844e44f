#include "hostform.h"

#include <QtCore/QEvent>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

HostForm::HostForm(QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(8);

    auto* pathRow = new QHBoxLayout;
    m_path = new QLabel;
    m_up = new QPushButton;
    m_choose = new QPushButton;
    m_refresh = new QPushButton;
    pathRow->addWidget(m_path, 1);
    pathRow->addWidget(m_up);
    pathRow->addWidget(m_choose);
    pathRow->addWidget(m_refresh);
    layout->addLayout(pathRow);

    auto* filterRow = new QHBoxLayout;
    m_filterLabel = new QLabel;
    m_filter = new QLineEdit;
    m_hidden = new QCheckBox;
    filterRow->addWidget(m_filterLabel);
    filterRow->addWidget(m_filter, 1);
    filterRow->addWidget(m_hidden);
    layout->addLayout(filterRow);

    m_tree = new QTreeWidget;
    m_tree->setColumnCount(3);
    m_tree->setRootIsDecorated(false);
    m_tree->setAlternatingRowColors(true);
    for (int i = 0; i < 40; ++i) {
        auto* item = new QTreeWidgetItem(m_tree);
        item->setText(0, QStringLiteral("entry-%1").arg(i, 2, 10, QLatin1Char('0')));
        item->setText(1, QStringLiteral("%1 KB").arg((i * 7919) % 100000));
        item->setText(2, QStringLiteral("2026-01-%1 12:00").arg(1 + i % 28, 2, 10, QLatin1Char('0')));
    }
    m_tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    layout->addWidget(m_tree, 1);

    m_summary = new QLabel;
    layout->addWidget(m_summary);

    retranslate();
}

void HostForm::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void HostForm::retranslate()
{
    ++m_retranslations;
    m_path->setText(tr("Folder: %1").arg(QStringLiteral("/home/user/Documents")));
    m_up->setText(tr("Up"));
    m_choose->setText(tr("Choose…"));
    m_refresh->setText(tr("Refresh"));
    m_filterLabel->setText(tr("Filter:"));
    m_filter->setPlaceholderText(tr("Part of a name"));
    m_hidden->setText(tr("Show hidden entries"));
    m_tree->setHeaderLabels({tr("Name"), tr("Size"), tr("Modified")});
    m_summary->setText(tr("%n entries", nullptr, 40));
}

BareTitle::BareTitle(QWidget* parent)
    : QWidget(parent)
{
    setFixedHeight(40);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(15, 0, 10, 0);
    row->setSpacing(10);
    auto* logo = new QLabel;
    logo->setFixedSize(30, 30);
    auto* title = new QLabel(QStringLiteral("Sample Bench Host"));
    row->addWidget(logo);
    row->addWidget(title);
    row->addStretch(1);
    for (const char* name : {"feedback", "menu"}) {
        auto* button = new QPushButton;
        button->setObjectName(QLatin1String(name));
        button->setFixedSize(20, 20);
        row->addWidget(button);
    }
    auto* separator = new QLabel;
    separator->setFixedSize(1, 23);
    row->addWidget(separator);
    for (const char* name : {"min", "max", "close"}) {
        auto* button = new QPushButton;
        button->setObjectName(QLatin1String(name));
        button->setFixedSize(20, 20);
        row->addWidget(button);
    }
}
