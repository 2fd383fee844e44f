#include "cskin.h"
#include "cskin_p.h"

#include <ZVFoundation/private/ZVQtCompat>

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QtMath>
#include <QtWidgets/QApplication>

#ifndef ZVCORE_COMPANY_URL
#error "ZVCORE_COMPANY_URL must name the company web address (a string literal)"
#endif

namespace {

struct Rgb
{
    int red;
    int green;
    int blue;
};

// Indexed by ColorStyle. 0, 4 and 10 are holes in the palette and share the white of
// unknown values.
constexpr Rgb kPalette[] = {
    {255, 255, 255}, // ColorUnused0
    {97, 108, 114},  // SlateGray
    {120, 120, 120}, // Gray120
    {250, 250, 250}, // Gray250
    {255, 255, 255}, // ColorUnused4
    {21, 160, 245},  // SkyBlue
    {88, 88, 88},    // Gray88
    {85, 179, 104},  // Green
    {169, 169, 169}, // Gray169
    {55, 125, 255},  // RoyalBlue
    {255, 255, 255}, // ColorUnused10
    {198, 198, 198}, // Gray198
    {187, 187, 187}, // Gray187
    {72, 72, 72},    // Gray72
    {230, 230, 230}, // Gray230
    {240, 240, 240}, // Gray240
    {153, 153, 153}, // Gray153
    {57, 172, 253},  // LightBlue
    {51, 51, 51},    // Gray51
    {224, 224, 224}, // Gray224
    {102, 102, 102}, // Gray102
    {0, 136, 255},   // Blue
    {70, 168, 254},  // PaleBlue
    {250, 98, 75},   // Coral
};
constexpr int kPaletteSize = int(sizeof(kPalette) / sizeof(kPalette[0]));
constexpr Rgb kDefaultColor = {255, 255, 255};

Rgb rgbOf(int style)
{
    return style >= 0 && style < kPaletteSize ? kPalette[style] : kDefaultColor;
}

struct FontRole
{
    int weight;
    int pixelSize;
};

// Qt 5's weight scale, as the table is written; FontWeight() turns it into the running Qt's.
constexpr int kNormal = 50; // QFont::Normal in Qt 5
constexpr int kBold = 75;   // QFont::Bold in Qt 5

// Indexed by FontStyle, Style0 to Style22.
constexpr FontRole kStyleFonts[] = {
    {kNormal, 14}, {kNormal, 13}, {62, 15},      {kBold, 14},    {kNormal, 11}, {kBold, 11},
    {kNormal, 13}, {kBold, 13},   {kNormal, 14}, {kBold, 14},    {kNormal, 15}, {kBold, 15},
    {kNormal, 16}, {kBold, 16},   {kNormal, 17}, {kBold, 17},    {kNormal, 18}, {kBold, 18},
    {kNormal, 19}, {kBold, 19},   {kNormal, 20}, {kBold, 20},    {kBold, 27},
};
constexpr int kStyleFontCount = int(sizeof(kStyleFonts) / sizeof(kStyleFonts[0]));

FontRole fontRoleOf(int style)
{
    if (style >= 0 && style < kStyleFontCount)
        return kStyleFonts[style];
    switch (style) {
    case CSkin::Normal8:
        return {kNormal, 8};
    case CSkin::Normal9:
        return {kNormal, 9};
    case CSkin::Bold9:
        return {kBold, 9};
    case CSkin::Normal27:
        return {kNormal, 27};
    case CSkin::Normal28:
        return {kNormal, 28};
    default:
        break;
    }
    // Normal10 to Bold24 alternate normal and bold, one pixel per pair.
    if (style >= CSkin::Normal10 && style <= CSkin::Bold24) {
        const int offset = style - CSkin::Normal10;
        return {offset % 2 == 0 ? kNormal : kBold, 10 + offset / 2};
    }
    return {kNormal, 15};
}

} // namespace

CSkin::CSkin()
    : m_d(new CSkinData)
{
}

CSkin::CSkin(const CSkin& other) = default;
CSkin& CSkin::operator=(const CSkin& other) = default;
CSkin::~CSkin() = default;

QString CSkin::GetImagePath() const
{
    return m_d->imagePath;
}

void CSkin::SetImagePath(const QString& path)
{
    m_d->imagePath = path;
}

QString CSkin::GetQssPath() const
{
    return m_d->qssPath;
}

void CSkin::SetQssPath(const QString& path)
{
    m_d->qssPath = path;
}

QString CSkin::GetBackupPath() const
{
    return m_d->backupPath;
}

void CSkin::SetBackupPath(const QString& path)
{
    m_d->backupPath = path;
}

QString CSkin::GetTempFilePath() const
{
    return m_d->tempFilePath;
}

void CSkin::SetTempFilePath(const QString& path)
{
    m_d->tempFilePath = path;
}

QString CSkin::GetCurrentLanguage() const
{
    return m_d->currentLanguage;
}

void CSkin::SetCurrentLanguage(const QString& language)
{
    m_d->currentLanguage = language;
}

void CSkin::SetFontName(const QString& name)
{
    m_d->fontName = name;
}

QColor CSkin::GetColor(ColorStyle style) const
{
    const Rgb rgb = rgbOf(style);
    return QColor(rgb.red, rgb.green, rgb.blue, 255);
}

QString CSkin::GetColorStyle(ColorStyle style) const
{
    const Rgb rgb = rgbOf(style);
    return QStringLiteral("color:rgb(%1, %2, %3);").arg(rgb.red).arg(rgb.green).arg(rgb.blue);
}

QString CSkin::GetTextColorStyle(ZVTextColor color) const
{
    switch (color) {
    case TextGray:
        return QStringLiteral("color:rgb(85, 85, 85);");
    case TextWhite:
        return QStringLiteral("color:rgb(255, 255, 255);");
    case TextBlack:
        return QStringLiteral("color:rgb(0, 0, 0);");
    }
    return QString();
}

QFont CSkin::GetFontStyle(FontStyle style) const
{
    const FontRole role = fontRoleOf(style);
    QFont font(m_d->fontName, -1, ZVQtCompat::FontWeight(role.weight), false);
    font.setPixelSize(role.pixelSize);
    if (style == Style22)
        font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}

QString CSkin::GetTextPostfix(const int& unit)
{
    switch (unit) {
    case 0:
        return QStringLiteral("Byte");
    case 1:
        return QStringLiteral("KB");
    case 2:
        return QStringLiteral("MB");
    default:
        return QStringLiteral("GB");
    }
}

int CSkin::GetDoubleMultiple(const double& value, const double& base, double& scaled)
{
    // Each step divides by the base while the value stays above 1024, exactly as the
    // recursive definition does, but in a loop: a base just above 1 takes thousands of
    // steps, which must not cost thousands of stack frames.
    //
    // A base of 1 or less (or not a number) never brings the value down to 1024, and no
    // base brings down an infinite value. Such input stays in its unit instead of
    // running forever.
    if (value > 1024.0 && (!(base > 1.0) || qIsInf(value))) {
        scaled = value;
        return 0;
    }
    int steps = 0;
    double current = value;
    while (current > 1024.0) {
        current = current / base;
        ++steps;
    }
    scaled = current;
    return steps;
}

std::string CSkin::GetLinkStr(const std::string& text, const std::string& color) const
{
    std::string html = "<html><head/><body><p><a href=\"" ZVCORE_COMPANY_URL "\">";
    if (!color.empty())
        html += "<span style=\" text-decoration: underline; color:" + color + ";\">";
    html += text;
    if (!color.empty())
        html += "</span>";
    html += "</a></p></body></html>";
    return html;
}

void CSkin::SetStyle(const QString& path)
{
    // setStyleSheet() belongs to QApplication; a core or GUI-only application object,
    // or none at all, has no widget styling to change.
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)
        return;

    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    // constData() is NUL-terminated, so the conversion stops at the first NUL byte of
    // the file, or at its end.
    application->setStyleSheet(QString::fromLatin1(bytes.constData()));
    file.close();
}
