#include <ZVCore/private/LanguageSelectDialog>

#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CLanguageStore>
#include <ZVControl/ZVDialogTitleBar>
#include <ZVControl/ZVStyleButton>
#include <ZVControl/ZVStyleComboBox>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QVariant>
#include <QtGui/QIcon>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

using namespace ZVUIFramework;

namespace {

// Posted on the bus once the language has been switched; the host decides what follows.
const int kLanguageChangedEvent = 1002;

const int kWidth = 440;
const int kHeightWithNotice = 214;
const int kHeightWithoutNotice = 176;
const int kTitleHeightWithNotice = 22;
const int kTitleHeightWithoutNotice = 32;
const int kBottomMarginWithNotice = 22;
const int kBottomMarginWithoutNotice = 32;

QString utf8(const std::string& s)
{
    return QString::fromUtf8(s.data(), int(s.size()));
}

ZVStyleButton* makeButton(const QString& objectName, QWidget* parent)
{
    auto* button = new ZVStyleButton(parent);
    button->setObjectName(objectName);
    button->setFlat(true);
    button->setFixedSize(120, 30);
    return button;
}

} // namespace

LanguageSelectDialog::LanguageSelectDialog(QWidget* parent)
    : ZVStyleDialog(parent)
{
    setMinimumSize(kWidth, kHeightWithoutNotice);
    setMaximumSize(kWidth, kHeightWithNotice);

    auto* dialogLayout = new QVBoxLayout(this);
    dialogLayout->setSpacing(0);
    // The dialog is 10 wider than its content: 5 on each side, room for the style
    // sheet's border and shadow.
    dialogLayout->setContentsMargins(5, 5, 5, 5);

    m_title = new ZVDialogTitleBar(this);
    m_title->setFixedHeight(kTitleHeightWithNotice);
    dialogLayout->addWidget(m_title);

    m_background = new QWidget(this);
    m_background->setObjectName(QStringLiteral("background_widget"));
    m_background->setFixedWidth(430);
    m_background->setMinimumHeight(100);
    m_background->setMaximumHeight(182);
    dialogLayout->addWidget(m_background);

    auto* content = new QVBoxLayout(m_background);
    content->setSpacing(0);
    content->setContentsMargins(22, 0, 22, 22);

    m_notice = new QLabel(m_background);
    m_notice->setObjectName(QStringLiteral("Core_language_notice_label"));
    m_notice->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_notice->setWordWrap(true);
    content->addWidget(m_notice);

    m_noticeSpacer = new QWidget(m_background);
    m_noticeSpacer->setObjectName(QStringLiteral("Core_language_notice_spacer"));
    m_noticeSpacer->setFixedHeight(10);
    content->addWidget(m_noticeSpacer);

    auto* selectRow = new QHBoxLayout;
    selectRow->setSpacing(14);
    m_selectLabel = new QLabel(m_background);
    m_selectLabel->setObjectName(QStringLiteral("Core_language_select_label"));
    m_combo = new ZVStyleComboBox(m_background);
    m_combo->setObjectName(QStringLiteral("Core_language_combo"));
    selectRow->addWidget(m_selectLabel);
    selectRow->addWidget(m_combo);
    content->addLayout(selectRow);

    content->addItem(new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding));

    auto* buttonRow = new QHBoxLayout;
    buttonRow->setSpacing(14);
    buttonRow->addItem(new QSpacerItem(40, 20, QSizePolicy::Expanding, QSizePolicy::Minimum));
    m_cancel = makeButton(QStringLiteral("Core_language_cancel"), m_background);
    m_ok = makeButton(QStringLiteral("Core_language_ok"), m_background);
    // Enter applies the choice; Esc closes the dialog, as for any QDialog.
    m_ok->setDefault(true);
    buttonRow->addWidget(m_cancel);
    buttonRow->addWidget(m_ok);
    content->addLayout(buttonRow);

    fillLanguages();
    retranslate();

    connect(m_ok, &QPushButton::clicked, this, &LanguageSelectDialog::apply);
    connect(m_cancel, &QPushButton::clicked, this, &QWidget::close);
}

LanguageSelectDialog::~LanguageSelectDialog() = default;

void LanguageSelectDialog::writeText(bool needRestart)
{
    m_needRestart = needRestart;
}

void LanguageSelectDialog::fillLanguages()
{
    // The popup is a window of its own; without a frame and with a see-through
    // background, the style sheet can round its corners like the dialog's.
    if (QWidget* popup = m_combo->view()->parentWidget()) {
        popup->setWindowFlags(popup->windowFlags() | Qt::FramelessWindowHint);
        popup->setAttribute(Qt::WA_TranslucentBackground);
    }

    CLanguageStore* store = CLanguageStore::GetInstance();
    const QChar sep = QDir::separator();
    const QString qmDir = store->GetLanguageQmPath() + sep + QLatin1String("ZVCore") + sep;
    int index = 0;
    for (const MCLanguageInfo& record : store->GetLanguageList()) {
        const QString name = utf8(record.name);
        // Only languages the frame itself is translated into are offered.
        if (!QFileInfo::exists(qmDir + QLatin1String("ZVCore_") + name + QLatin1String(".qm")))
            continue;
        m_combo->insertItem(index++, QIcon(), utf8(record.show), name);
    }

    const int current =
        m_combo->findData(CCommonModule::GetInstance()->GetCurrentLanguage(), Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
    m_currentIndex = current >= 0 ? current : 0;
    m_combo->setCurrentIndex(m_currentIndex);
}

void LanguageSelectDialog::retranslate()
{
    m_selectLabel->setText(tr("Please select a language"));
    m_cancel->setText(tr("Cancel"));
    m_ok->setText(tr("OK"));

    const QVariant tip = qApp->property("CoreLanguageChangeTip");
    if (tip.isValid() && !tip.toString().isEmpty())
        m_notice->setText(tip.toString());
    else
        m_notice->setText(tr("Notice:") + QLatin1Char(' ') + tr("The program will restart in order to apply the changes."));
}

void LanguageSelectDialog::apply()
{
    const int index = m_combo->currentIndex();
    // With nothing offered there is no language to switch to.
    if (index != m_currentIndex && index >= 0) {
        m_currentIndex = index;
        CCommonModule::GetInstance()->SetLanguage(m_combo->itemData(index).toString());
        ZVCustomEventSendObj::GetInstance()->PostEvent(kLanguageChangedEvent, 1);
    }
    close();
}

bool LanguageSelectDialog::event(QEvent* event)
{
    const bool result = ZVStyleDialog::event(event);
    if (!event)
        return result;

    if (event->type() == QEvent::Polish && !m_polished) {
        m_polished = true;
        const int radius = qApp->property("dlgRadius").toInt();
        m_background->setStyleSheet(
            QStringLiteral("QWidget#background_widget { border-bottom-left-radius: %1px;border-bottom-right-radius: %2px; }")
                .arg(radius)
                .arg(radius));
        // Also hides the bar's minimise and maximise buttons, which a dialog has no use for.
        m_title->setupForDialog(this, true);

        QMargins margins = m_background->layout()->contentsMargins();
        if (m_needRestart) {
            setFixedSize(kWidth, kHeightWithNotice);
            margins.setBottom(kBottomMarginWithNotice);
            m_title->setFixedHeight(kTitleHeightWithNotice);
        } else {
            setFixedSize(kWidth, kHeightWithoutNotice);
            margins.setBottom(kBottomMarginWithoutNotice);
            m_title->setFixedHeight(kTitleHeightWithoutNotice);
        }
        m_background->layout()->setContentsMargins(margins);
        m_notice->setVisible(m_needRestart);
        m_noticeSpacer->setVisible(m_needRestart);
    } else if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
    return result;
}

void LanguageSelectDialog::mousePressEvent(QMouseEvent* event)
{
    ZVStyleDialog::mousePressEvent(event);
    if (event && event->buttons() == Qt::LeftButton)
        m_dragOrigin = event->pos();
}

void LanguageSelectDialog::mouseMoveEvent(QMouseEvent* event)
{
    ZVStyleDialog::mouseMoveEvent(event);
    if (event && event->buttons() == Qt::LeftButton && !m_dragOrigin.isNull())
        move(pos() + event->pos() - m_dragOrigin);
}

void LanguageSelectDialog::mouseReleaseEvent(QMouseEvent* event)
{
    ZVStyleDialog::mouseReleaseEvent(event);
    m_dragOrigin = QPoint();
}
