#ifndef ZVCORE_CSKIN_H
#define ZVCORE_CSKIN_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>

#include <string>

class CSkinData;

/*!
 * The framework's fixed visual vocabulary: a palette of named colours, a table of fonts
 * by role, the texts of file-size units, an HTML link template and the paths of the
 * skin's files. The application context owns one skin and fills its paths and font
 * name when it initialises it; the other setters are there for the host.
 *
 * CSkin is a plain value: copies share nothing observable, and an enumeration value
 * outside its table gives the table's default instead of failing.
 *
 * \code
 * CSkin& skin = ZVUIFramework::ZVApplicationInfo::GetInstance()->GetSkinObject();
 * label->setFont(skin.GetFontStyle(CSkin::Bold12));
 * label->setStyleSheet(skin.GetColorStyle(CSkin::Gray51));   // "color:rgb(51, 51, 51);"
 *
 * double scaled = 0.0;
 * const int unit = skin.GetDoubleMultiple(1536.0, 1024.0, scaled);   // 1, scaled 1.5
 * sizeLabel->setText(QString::number(scaled) + skin.GetTextPostfix(unit));   // "1.5KB"
 *
 * CSkin::SetStyle(skin.GetQssPath() + QStringLiteral("ZVUIFramework.qss"));
 * \endcode
 */
class ZVCORE_EXPORT CSkin
{
public:
    /// Named colours. 0, 4 and 10 have no colour of their own and give white, as does
    /// every value outside the table.
    enum ColorStyle : int {
        ColorUnused0 = 0,
        SlateGray = 1,
        Gray120 = 2,
        Gray250 = 3,
        ColorUnused4 = 4,
        SkyBlue = 5,
        Gray88 = 6,
        Green = 7,
        Gray169 = 8,
        RoyalBlue = 9,
        ColorUnused10 = 10,
        Gray198 = 11,
        Gray187 = 12,
        Gray72 = 13,
        Gray230 = 14,
        Gray240 = 15,
        Gray153 = 16,
        LightBlue = 17,
        Gray51 = 18,
        Gray224 = 19,
        Gray102 = 20,
        Blue = 21,
        PaleBlue = 22,
        Coral = 23
    };

    /// Fonts by role. Values outside the table give a normal 15 px font.
    enum FontStyle : int {
        Style0 = 0,     ///< normal, 14 px
        Style1 = 1,     ///< normal, 13 px
        Style2 = 2,     ///< weight 62, 15 px
        Style3 = 3,     ///< bold, 14 px
        Style4 = 4,     ///< normal, 11 px
        Style5 = 5,     ///< bold, 11 px
        Style6 = 6,     ///< normal, 13 px
        Style7 = 7,     ///< bold, 13 px
        Style8 = 8,     ///< normal, 14 px
        Style9 = 9,     ///< bold, 14 px
        Style10 = 10,   ///< normal, 15 px
        Style11 = 11,   ///< bold, 15 px
        Style12 = 12,   ///< normal, 16 px
        Style13 = 13,   ///< bold, 16 px
        Style14 = 14,   ///< normal, 17 px
        Style15 = 15,   ///< bold, 17 px
        Style16 = 16,   ///< normal, 18 px
        Style17 = 17,   ///< bold, 18 px
        Style18 = 18,   ///< normal, 19 px
        Style19 = 19,   ///< bold, 19 px
        Style20 = 20,   ///< normal, 20 px
        Style21 = 21,   ///< bold, 20 px
        Style22 = 22,   ///< bold, 27 px, antialiased
        Normal8 = 23,
        Normal9 = 24,
        Bold9 = 25,
        Normal10 = 26,
        Bold10 = 27,
        Normal11 = 28,
        Bold11 = 29,
        Normal12 = 30,
        Bold12 = 31,
        Normal13 = 32,
        Bold13 = 33,
        Normal14 = 34,
        Bold14 = 35,
        Normal15 = 36,
        Bold15 = 37,
        Normal16 = 38,
        Bold16 = 39,
        Normal17 = 40,
        Bold17 = 41,
        Normal18 = 42,
        Bold18 = 43,
        Normal19 = 44,
        Bold19 = 45,
        Normal20 = 46,
        Bold20 = 47,
        Normal21 = 48,
        Bold21 = 49,
        Normal22 = 50,
        Bold22 = 51,
        Normal23 = 52,
        Bold23 = 53,
        Normal24 = 54,
        Bold24 = 55,
        Normal27 = 56,
        Normal28 = 57
    };

    /// Text colours as style-sheet fragments; other values give an empty fragment.
    enum ZVTextColor : int {
        TextGray = 0,
        TextWhite = 1,
        TextBlack = 2
    };

    /// A skin with every path, the font name and the language empty.
    CSkin();
    CSkin(const CSkin& other);
    CSkin& operator=(const CSkin& other);
    ~CSkin();

    QString GetImagePath() const;
    void SetImagePath(const QString& path);

    QString GetQssPath() const;
    void SetQssPath(const QString& path);

    QString GetBackupPath() const;
    void SetBackupPath(const QString& path);

    QString GetTempFilePath() const;
    void SetTempFilePath(const QString& path);

    QString GetCurrentLanguage() const;
    void SetCurrentLanguage(const QString& language);

    /// The family of every font GetFontStyle() returns.
    void SetFontName(const QString& name);

    /// The palette colour, always opaque.
    QColor GetColor(ColorStyle style) const;
    /// The palette colour as a style-sheet fragment such as "color:rgb(97, 108, 114);".
    QString GetColorStyle(ColorStyle style) const;
    /// "color:rgb(85, 85, 85);", "color:rgb(255, 255, 255);" or "color:rgb(0, 0, 0);".
    QString GetTextColorStyle(ZVTextColor color) const;
    /// A font of the skin's family with the role's weight and pixel size.
    QFont GetFontStyle(FontStyle style) const;

    /// "Byte", "KB", "MB" for 0, 1, 2; "GB" for everything else.
    QString GetTextPostfix(const int& unit);

    /// Divides \a value by \a base while it is above 1024 and returns how often it did;
    /// \a scaled receives what is left. The threshold stays 1024 whatever the base.
    /// A base that is not above 1, or an infinite value, is left undivided: the result
    /// is 0 and \a scaled is \a value.
    int GetDoubleMultiple(const double& value, const double& base, double& scaled);

    /// HTML of a link to the company's site showing \a text; a non-empty \a color
    /// (any CSS colour, inserted as given) underlines the text in that colour.
    std::string GetLinkStr(const std::string& text, const std::string& color) const;

    /// Makes the Latin-1 text of the file at \a path, up to its first NUL byte, the
    /// application style sheet; a file that cannot be read gives an empty sheet.
    /// Does nothing without a QApplication. GUI thread only.
    static void SetStyle(const QString& path);

private:
    QSharedDataPointer<CSkinData> m_d;
};

#endif // ZVCORE_CSKIN_H
