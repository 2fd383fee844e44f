// Draws the pictures of the sample skins as PNG files: crisp vector icons on a
// transparent background, in a light and a dark colour variant.
//
//   makepictures <output folder> <light|dark> <scale>
//
// The scale multiplies every size: 1 for PictureNormal, 2 for Picture4K.
#include <QtCore/QDir>
#include <QtCore/QTextStream>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <functional>

namespace {

struct Palette
{
    QColor stroke;   // glyphs of the title bar buttons
    QColor accent;   // the product mark
    QColor accentLight;
    QColor lens;
};

Palette paletteFor(const QString& variant)
{
    if (variant == QLatin1String("dark"))
        return {QColor(0xe6, 0xe8, 0xee), QColor(0x5b, 0x9b, 0xff), QColor(0x9c, 0xc3, 0xff), QColor(0xff, 0xff, 0xff)};
    return {QColor(0x3a, 0x3f, 0x4b), QColor(0x2f, 0x6f, 0xde), QColor(0x7f, 0xaa, 0xf2), QColor(0xff, 0xff, 0xff)};
}

using Draw = std::function<void(QPainter&, const Palette&)>;

// Paints \a draw into a square of \a logical pixels (drawing coordinates) times \a scale.
bool save(const QString& path, int logical, qreal scale, const Draw& draw, const Palette& palette)
{
    const int side = qRound(logical * scale);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.scale(scale, scale);
    draw(painter, palette);
    painter.end();
    return image.save(path, "PNG");
}

QPen strokePen(const Palette& p, qreal width = 1.5)
{
    return QPen(p.stroke, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

// A folder with a magnifying lens, on a 30 x 30 grid scaled to \a size.
void drawMark(QPainter& g, const Palette& p, qreal size)
{
    g.save();
    g.scale(size / 30.0, size / 30.0);
    QPainterPath folder;
    folder.moveTo(3, 8);
    folder.quadTo(3, 5.5, 5.5, 5.5);
    folder.lineTo(11, 5.5);
    folder.lineTo(13.5, 8.5);
    folder.lineTo(24.5, 8.5);
    folder.quadTo(27, 8.5, 27, 11);
    folder.lineTo(27, 22.5);
    folder.quadTo(27, 25, 24.5, 25);
    folder.lineTo(5.5, 25);
    folder.quadTo(3, 25, 3, 22.5);
    folder.closeSubpath();
    g.setPen(Qt::NoPen);
    g.setBrush(p.accent);
    g.drawPath(folder);
    g.setBrush(p.accentLight);
    g.drawRoundedRect(QRectF(3, 11, 24, 2), 1, 1);
    g.setBrush(Qt::NoBrush);
    g.setPen(QPen(p.lens, 2.2, Qt::SolidLine, Qt::RoundCap));
    g.drawEllipse(QPointF(14, 18.5), 4, 4);
    g.drawLine(QPointF(17, 21.5), QPointF(20.5, 25 - 2.5));
    g.restore();
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList args = app.arguments();
    if (args.size() != 4) {
        err << "usage: makepictures <output folder> <light|dark> <scale>\n";
        return 2;
    }
    const QString folder = args.at(1);
    const Palette palette = paletteFor(args.at(2));
    bool ok = false;
    const qreal scale = args.at(3).toDouble(&ok);
    if (!ok || scale <= 0) {
        err << "makepictures: bad scale " << args.at(3) << "\n";
        return 2;
    }
    if (!QDir().mkpath(folder)) {
        err << "makepictures: cannot create " << folder << "\n";
        return 1;
    }

    struct Picture
    {
        const char* name;
        int size;
        Draw draw;
    };
    const Picture pictures[] = {
        {"logo", 30, [](QPainter& g, const Palette& p) { drawMark(g, p, 30); }},
        {"about_logo", 50, [](QPainter& g, const Palette& p) { drawMark(g, p, 50); }},
        {"feedback", 20,
         [](QPainter& g, const Palette& p) {
             QPainterPath bubble;
             bubble.addRoundedRect(QRectF(3.5, 4.5, 13, 9), 2.5, 2.5);
             QPainterPath tail;
             tail.moveTo(6.5, 13);
             tail.lineTo(6.5, 16.5);
             tail.lineTo(10, 13);
             g.setPen(strokePen(p));
             g.drawPath(bubble.united(tail));
             g.setPen(Qt::NoPen);
             g.setBrush(p.stroke);
             for (qreal x : {7.0, 10.0, 13.0})
                 g.drawEllipse(QPointF(x, 9), 0.9, 0.9);
         }},
        {"menu", 20,
         [](QPainter& g, const Palette& p) {
             g.setPen(strokePen(p));
             for (qreal y : {6.0, 10.0, 14.0})
                 g.drawLine(QPointF(4.5, y), QPointF(15.5, y));
         }},
        {"minimize", 20,
         [](QPainter& g, const Palette& p) {
             g.setPen(strokePen(p));
             g.drawLine(QPointF(5, 10), QPointF(15, 10));
         }},
        {"maximize", 20,
         [](QPainter& g, const Palette& p) {
             g.setPen(strokePen(p));
             g.drawRoundedRect(QRectF(5, 5, 10, 10), 1.5, 1.5);
         }},
        {"restore", 20,
         [](QPainter& g, const Palette& p) {
             g.setPen(strokePen(p));
             g.drawRoundedRect(QRectF(4.5, 7.5, 8, 8), 1.5, 1.5);
             QPainterPath back;
             back.moveTo(7.5, 5.5);
             back.quadTo(7.5, 4.5, 8.5, 4.5);
             back.lineTo(14.5, 4.5);
             back.quadTo(15.5, 4.5, 15.5, 5.5);
             back.lineTo(15.5, 11.5);
             back.quadTo(15.5, 12.5, 14.5, 12.5);
             g.drawPath(back);
         }},
        {"close", 20,
         [](QPainter& g, const Palette& p) {
             g.setPen(strokePen(p));
             g.drawLine(QPointF(5.5, 5.5), QPointF(14.5, 14.5));
             g.drawLine(QPointF(14.5, 5.5), QPointF(5.5, 14.5));
         }},
    };

    for (const Picture& picture : pictures) {
        const QString path = QDir(folder).filePath(QString::fromLatin1(picture.name) + QStringLiteral(".png"));
        if (!save(path, picture.size, scale, picture.draw, palette)) {
            err << "makepictures: cannot write " << path << "\n";
            return 1;
        }
    }
    return 0;
}
