#include <ZVControl/ZVDialogTitleBar>

#include <QtCore/QEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace {

const int kButtonSize = 20;

QPushButton* makeButton(const QString& objectName, QWidget* parent)
{
    auto* button = new QPushButton(parent);
    button->setObjectName(objectName);
    button->setFixedSize(kButtonSize, kButtonSize);
    // Clicking a title button must not steal the focus from the dialog's content.
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

ZVDialogTitleBar::ZVDialogTitleBar(QWidget* parent)
    : ZVDialogTitleBar(false, parent)
{
}

ZVDialogTitleBar::ZVDialogTitleBar(bool windowButtons, QWidget* parent)
    : ZVStyleWidget(parent)
{
    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("label_title"));
    // A press on the title must reach the bar, which is the drag grip.
    m_title->setAttribute(Qt::WA_TransparentForMouseEvents);

    m_close = makeButton(QStringLiteral("btn_close"), this);
    connect(m_close, &QPushButton::clicked, this, &ZVDialogTitleBar::closeClicked);

    m_layout = new QHBoxLayout(this);
    m_layout->setContentsMargins(12, 0, 6, 0);
    m_layout->setSpacing(6);
    m_layout->addWidget(m_title);
    m_layout->addStretch(1);
    m_layout->addWidget(m_close);

    if (windowButtons)
        setWindowButtonsVisible(true);
    retranslate();
}

void ZVDialogTitleBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    ZVStyleWidget::changeEvent(event);
}

void ZVDialogTitleBar::retranslate()
{
    m_close->setAccessibleName(tr("Close"));
    m_close->setAccessibleDescription(tr("Closes the window"));
    if (m_min) {
        m_min->setAccessibleName(tr("Minimise"));
        m_min->setAccessibleDescription(tr("Minimises the window"));
        m_max->setAccessibleName(tr("Maximise"));
        m_max->setAccessibleDescription(tr("Maximises the window"));
    }
}

ZVDialogTitleBar::~ZVDialogTitleBar() = default;

void ZVDialogTitleBar::setTitle(const QString& title)
{
    m_title->setText(title);
}

QString ZVDialogTitleBar::title() const
{
    return m_title->text();
}

QLabel* ZVDialogTitleBar::titleLabel() const
{
    return m_title;
}

QPushButton* ZVDialogTitleBar::closeButton() const
{
    return m_close;
}

QPushButton* ZVDialogTitleBar::minimizeButton() const
{
    return m_min;
}

QPushButton* ZVDialogTitleBar::maximizeButton() const
{
    return m_max;
}

void ZVDialogTitleBar::createWindowButtons()
{
    m_min = makeButton(QStringLiteral("btn_min"), this);
    m_max = makeButton(QStringLiteral("btn_max"), this);
    connect(m_min, &QPushButton::clicked, this, &ZVDialogTitleBar::minimizeClicked);
    connect(m_max, &QPushButton::clicked, this, &ZVDialogTitleBar::maximizeClicked);
    // Before the close button, in the order window title bars use.
    const int closeAt = m_layout->indexOf(m_close);
    m_layout->insertWidget(closeAt, m_max);
    m_layout->insertWidget(closeAt, m_min);
    retranslate();
}

void ZVDialogTitleBar::setWindowButtonsVisible(bool visible)
{
    if (!m_min) {
        if (!visible)
            return;
        createWindowButtons();
    }
    m_min->setVisible(visible);
    m_max->setVisible(visible);
}

void ZVDialogTitleBar::setupForDialog(QWidget* dialog, bool enabled)
{
    setEnabledMouseDrag(dialog, enabled);

    if (m_dialog != dialog) {
        disconnect(m_closeConnection);
        m_closeConnection = {};
        m_dialog = dialog;
        if (dialog)
            m_closeConnection = connect(m_close, &QPushButton::clicked, dialog, &QWidget::close);
    }

    setWindowButtonsVisible(false);
}
