#include <ZVCore/private/CCustomWidgetTitle>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

CCustomWidgetTitle::CCustomWidgetTitle(QWidget* parent)
    : ZVStyleWidget(parent)
{
    setObjectName(QStringLiteral("Core_widgetTitle"));
    const int radius = qApp ? qApp->property("dlgRadius").toInt() : 0;
    setStyleSheet(QStringLiteral("CCustomWidgetTitle { border-top-left-radius: %1px; border-top-right-radius: %2px; }")
                      .arg(radius)
                      .arg(radius));

    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("Core_label_title"));
    m_close = new QPushButton(this);
    m_close->setObjectName(QStringLiteral("Core_btn_close"));
    m_close->setFixedSize(24, 24);

    // Qt mirrors the columns in right-to-left layout but not the margins, which are
    // given as left and right; the title's indent and the button's gap swap sides here.
    const bool rightToLeft = QGuiApplication::layoutDirection() == Qt::RightToLeft;

    auto* mainLayout = new QHBoxLayout(this);
    mainLayout->setSpacing(6);
    mainLayout->setContentsMargins(rightToLeft ? QMargins(0, 0, 34, 0) : QMargins(34, 0, 0, 0));

    auto* left = new QVBoxLayout;
    left->setContentsMargins(0, 16, 0, 4);
    left->addWidget(m_title);

    auto* right = new QVBoxLayout;
    right->setContentsMargins(rightToLeft ? QMargins(16, 16, 0, 0) : QMargins(0, 16, 16, 0));
    right->addWidget(m_close);

    mainLayout->addLayout(left);
    mainLayout->addStretch(1);
    mainLayout->addLayout(right);

    connect(m_close, &QPushButton::clicked, this, &CCustomWidgetTitle::signalCilckClose);
}

CCustomWidgetTitle::~CCustomWidgetTitle() = default;

void CCustomWidgetTitle::setTitle(const QString& title)
{
    m_title->setText(title);
}
