#include <ZVCore/private/ZVAboutDialog>

#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CCustomWidgetTitle>
#include <ZVControl/ZVLabel>
#include <ZVFoundation/CZV_Base_File>

#include <QtCore/QCoreApplication>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

using namespace ZVUIFramework;

namespace {

// The link markup keeps its leading blank and leaves the anchor open, as products'
// style sheets and translations have always seen it.
const char kLinkTemplate[] = " <style> a {text-decoration: none ; color: %1;} </style><a href=\"%2\">%3";

QString applicationText(const char* name)
{
    return qApp ? qApp->property(name).toString() : QString();
}

QString builtIn(const char* text)
{
    return QString::fromUtf8(text);
}

bool isArabic(const QString& language)
{
    return language.compare(QLatin1String("Arabic"), Qt::CaseInsensitive) == 0;
}

QString linkMarkup(const QString& color, const QString& address, const QString& text)
{
    return QString::fromLatin1(kLinkTemplate).arg(color, address, text);
}

void openAddress(const QString& address)
{
    QDesktopServices::openUrl(QUrl(address, QUrl::TolerantMode));
}

} // namespace

ZVAboutDialog::ZVAboutDialog(QWidget* parent)
    : ZVStyleDialog(parent)
{
    setObjectName(QStringLiteral("ZVAboutDialog"));
    setFixedSize(560, 350);

    const int radius = qApp ? qApp->property("dlgRadius").toInt() : 0;
    const bool arabic = isArabic(ZVApplicationInfo::GetInstance()->GetCurrentLanguage());
    // Qt mirrors layouts itself only when the host enables right-to-left; otherwise an
    // Arabic dialog swaps the two sides of its link and bottom rows by hand.
    const bool mirror = arabic && !(qApp && qApp->property("EnableRightToLeft").toBool());
    const Qt::Alignment leading = (mirror ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    const Qt::Alignment trailing = (mirror ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter;

    auto* dialogLayout = new QVBoxLayout(this);
    dialogLayout->setContentsMargins(0, 0, 0, 0);
    dialogLayout->setSpacing(0);

    m_title = new CCustomWidgetTitle(this);
    m_title->setObjectName(QStringLiteral("Core_about_title"));
    m_title->setFixedHeight(40);
    connect(m_title, &CCustomWidgetTitle::signalCilckClose, this, &QWidget::close);
    dialogLayout->addWidget(m_title);

    m_background = new QWidget(this);
    m_background->setObjectName(QStringLiteral("background_widget"));
    m_background->setFixedSize(550, 200);
    m_background->setStyleSheet(
        QStringLiteral("QWidget#background_widget { border-bottom-left-radius: %1px;border-bottom-right-radius: %2px; }")
            .arg(radius)
            .arg(radius));
    dialogLayout->addWidget(m_background);

    auto* content = new QVBoxLayout(m_background);
    content->setContentsMargins(34, 12, 34, 28);
    content->setSpacing(0);

    m_logo = new QLabel(m_background);
    m_logo->setObjectName(QStringLiteral("Core_label_logo"));
    m_logo->setFixedSize(50, 50);

    m_productName = new QLabel(m_background);
    m_productName->setObjectName(QStringLiteral("Core_productName"));
    m_productName->setWordWrap(true);
    m_productName->setAlignment((arabic ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);

    m_productInfo = new QLabel(m_background);
    m_productInfo->setObjectName(QStringLiteral("Core_productInfo"));
    m_productInfo->setWordWrap(true);

    auto* headRow = new QHBoxLayout;
    headRow->setContentsMargins(0, 0, 0, 0);
    headRow->setSpacing(16);
    headRow->addWidget(m_logo);
    auto* headTexts = new QVBoxLayout;
    headTexts->setContentsMargins(0, 0, 0, 0);
    headTexts->setSpacing(4);
    headTexts->addStretch();
    headTexts->addWidget(m_productName);
    headTexts->addWidget(m_productInfo);
    headTexts->addStretch();
    headRow->addLayout(headTexts);
    content->addLayout(headRow);

    content->addSpacing(12);
    m_separator = new QLabel(m_background);
    m_separator->setObjectName(QStringLiteral("Core_separator_line"));
    m_separator->setFixedHeight(1);
    content->addWidget(m_separator);

    m_companyInfo = new QLabel(m_background);
    m_companyInfo->setObjectName(QStringLiteral("Core_labelCompanyInfo"));
    m_companyInfo->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_companyInfo->setWordWrap(true);
    content->addWidget(m_companyInfo, 1);

    m_homeLink = new ZVLabel(m_background);
    m_homeLink->setObjectName(QStringLiteral("Core_official_website"));
    m_supportLink = new ZVLabel(m_background);
    m_supportLink->setObjectName(QStringLiteral("Core_contact_support"));
    for (ZVLabel* link : {m_homeLink, m_supportLink}) {
        link->setTextFormat(Qt::RichText);
        // The label reports the click; the dialog decides which address opens.
        link->setOpenExternalLinks(false);
    }
    m_homeLink->setAlignment(leading);
    m_supportLink->setAlignment(trailing);
    auto* linkRow = new QHBoxLayout;
    linkRow->setContentsMargins(0, 0, 0, 0);
    linkRow->setSpacing(0);
    linkRow->addWidget(m_homeLink);
    linkRow->addWidget(m_supportLink);
    content->addLayout(linkRow);

    content->addSpacing(12);
    m_version = new QLabel(m_background);
    m_version->setObjectName(QStringLiteral("Core_label_version"));
    m_version->setAlignment(leading);
    m_copyright = new QLabel(m_background);
    m_copyright->setObjectName(QStringLiteral("Core_label_copyright"));
    m_copyright->setAlignment(trailing);
    auto* bottomRow = new QHBoxLayout;
    bottomRow->setContentsMargins(0, 0, 0, 0);
    bottomRow->setSpacing(0);
    bottomRow->addWidget(m_version);
    bottomRow->addWidget(m_copyright);
    content->addLayout(bottomRow);

    dialogLayout->setContentsMargins(5, 5, 5, 5);
}

ZVAboutDialog::~ZVAboutDialog() = default;

QString ZVAboutDialog::linkColor() const
{
    return m_linkColor;
}

void ZVAboutDialog::setLinkColor(const QString& color)
{
    m_linkColor = color;
}

QString ZVAboutDialog::homeUrlForDisplay()
{
    const QString url = applicationText("HomeURL");
    return url.isEmpty() ? builtIn(ZVCORE_HOME_URL) : url;
}

QString ZVAboutDialog::homeUrlForOpening()
{
    // The link file's address may carry tracking parameters: it is opened, never shown.
    const QString url = CCommonModule::GetInstance()->GetDecodedLink(QStringLiteral("AboutHome"));
    return url.isEmpty() ? homeUrlForDisplay() : url;
}

QString ZVAboutDialog::supportUrlForDisplay()
{
    const QString url = applicationText("SupportURL");
    return url.isEmpty() ? builtIn(ZVCORE_SUPPORT_URL) : url;
}

QString ZVAboutDialog::supportUrlForOpening()
{
    const QString url = CCommonModule::GetInstance()->GetDecodedLink(QStringLiteral("AboutSupport"));
    return url.isEmpty() ? supportUrlForDisplay() : url;
}

bool ZVAboutDialog::event(QEvent* event)
{
    // The base class polishes first, so that a linkColor from the style sheet is in
    // place when the texts are filled.
    const bool result = ZVStyleDialog::event(event);
    if (event && event->type() == QEvent::Polish && !m_filled) {
        m_filled = true;
        fillTexts();
    }
    return result;
}

void ZVAboutDialog::fillTexts()
{
    ZVApplicationInfo* context = ZVApplicationInfo::GetInstance();

    m_title->setEnabledMouseDrag(this, true);
    m_title->setTitle(tr("About Us"));

    QString productName = applicationText("FullProductName");
    if (productName.isEmpty())
        productName = context->GetBrandName() + QLatin1Char(' ') + context->GetAppName();
    m_productName->setText(productName);

    m_productInfo->setText(context->GetInfo());

    QString version = CZV_Base_File::GetFileVersion(QCoreApplication::applicationFilePath());
    const int lastDot = version.lastIndexOf(QLatin1Char('.'));
    if (lastDot >= 0)
        version.truncate(lastDot);
    m_version->setText(tr("Version: ") + version);

    QString introduction = applicationText("CompanyIntroduction");
    if (introduction.isEmpty())
        introduction = QCoreApplication::translate("ZVAboutDialog", ZVCORE_COMPANY_INTRODUCTION);
    m_companyInfo->setText(QStringLiteral("<p style='line-height:20px'>%1</p>").arg(introduction));

    const QString home = homeUrlForDisplay();
    m_homeLink->setText(linkMarkup(m_linkColor, home, tr("Official Website")));
    m_homeLink->setToolTip(home);

    const QString support = supportUrlForDisplay();
    m_supportLink->setText(linkMarkup(m_linkColor, support, tr("Contact Support")));
    m_supportLink->setToolTip(support);

    connect(m_homeLink, &QLabel::linkActivated, this, [] { openAddress(homeUrlForOpening()); });
    connect(m_supportLink, &QLabel::linkActivated, this, [] { openAddress(supportUrlForOpening()); });

    QString copyright = applicationText("CompanyCopyright");
    if (copyright.isEmpty())
        copyright = builtIn(ZVCORE_COMPANY_COPYRIGHT);
    m_copyright->setText(copyright);
}
