#include "app/kit/icons.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QDir>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <cmath>

namespace velmora
{
namespace
{

constexpr const char* folder = ":/velmora/icons/";
constexpr const char* programIconFile = ":/velmora/icons/velmora.svg";
constexpr double toneOnLight = 0.20;
constexpr double toneOnDark = 0.34;
constexpr double toneOnFill = 0.25;

/// Line widths on the grid of 24 that look alike on the screen.
double lineFor(int size)
{
    if (size >= 36)
        return 1;
    if (size >= 22)
        return 1.5;
    return 1.75;
}

QByteArray colored(QByteArray svg, const IconColors& colors, double line)
{
    const auto paint = [](const char* attribute, const QColor& color) {
        const QByteArray name(attribute);
        if (color.alpha() == 0)
            return QByteArray(name + "=\"none\"");
        return QByteArray(name + "=\"" + color.name().toLatin1() + "\" " + name + "-opacity=\"" +
                          QByteArray::number(static_cast<double>(color.alphaF()), 'f', 3) + '"');
    };
    svg.replace("stroke=\"ink\"", paint("stroke", colors.ink));
    svg.replace("fill=\"ink\"", paint("fill", colors.ink));
    svg.replace("fill=\"tone\"", paint("fill", colors.tone));
    svg.replace("stroke-width=\"1.5\"", "stroke-width=\"" + QByteArray::number(line) + '"');
    return svg;
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPixmap rendered(const QByteArray& svg, int size, double ratio)
{
    QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return {};
    const int pixels = std::max(1, static_cast<int>(std::lround(size * ratio)));
    QPixmap picture(pixels, pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
}

QColor tone(const Look& look, const QColor& color)
{
    if (look.raisedContrast)
        return Qt::transparent;
    return faded(color, look.dark() ? toneOnDark : toneOnLight);
}

/// Draws an icon of the family in the colours that the look has when it is painted.
class FamilyIconEngine : public QIconEngine
{
public:
    FamilyIconEngine(QString name, IconInk ink) : m_name(std::move(name)), m_ink(ink) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const int size = std::min(rect.width(), rect.height());
        const double ratio = painter->device()->devicePixelRatio();
        const QPixmap picture = scaledPixmap(QSize(size, size) * ratio, mode, state, ratio);
        painter->drawPixmap(rect.x() + (rect.width() - size) / 2, rect.y() + (rect.height() - size) / 2, picture);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal ratio) override
    {
        const Look& look = lookOf(nullptr);
        IconColors colors =
            mode == QIcon::Selected ? selectedIconColors(look) : iconColors(look, mode != QIcon::Disabled);
        if (mode != QIcon::Selected && mode != QIcon::Disabled && m_ink == IconInk::secondary)
            colors.ink = look.roles.secondary;
        const int side = static_cast<int>(std::lround(std::min(size.width(), size.height()) / ratio));
        return iconPixmap(m_name, side, ratio, colors);
    }

    QIconEngine* clone() const override { return new FamilyIconEngine(m_name, m_ink); }
    bool isNull() override { return !QFile::exists(QLatin1String(folder) + m_name + QLatin1String(".svg")); }

private:
    QString m_name;
    IconInk m_ink;
};

class ProgramIconEngine : public QIconEngine
{
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        const int size = std::min(rect.width(), rect.height());
        painter->drawPixmap(rect.topLeft(), programIconPixmap(size, painter->device()->devicePixelRatio()));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        return programIconPixmap(std::min(size.width(), size.height()), 1);
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        // Window systems ask for these; everything between is rendered just as well.
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}, {128, 128}, {256, 256}, {512, 512}};
    }
    QIconEngine* clone() const override { return new ProgramIconEngine; }
    bool isNull() override { return false; }
};

} // namespace

IconColors iconColors(const Look& look, bool enabled)
{
    if (!enabled)
        return {look.roles.disabled, Qt::transparent};
    return {look.roles.primary, tone(look, look.palette.accent)};
}

IconColors selectedIconColors(const Look& look)
{
    return {look.roles.accentText, tone(look, look.palette.accent)};
}

IconColors filledIconColors(const Look& look)
{
    return {look.roles.onAccent,
            look.raisedContrast ? QColor(Qt::transparent) : faded(look.roles.onAccent, toneOnFill)};
}

QStringList iconNames()
{
    QStringList names;
    for (const QString& file : QDir(QLatin1String(folder)).entryList({QStringLiteral("*.svg")}, QDir::Files)) {
        if (QLatin1String(folder) + file != QLatin1String(programIconFile))
            names.append(file.chopped(4));
    }
    return names;
}

QPixmap iconPixmap(const QString& name, int size, double ratio, const IconColors& colors)
{
    const QString key = QStringLiteral("velmora-icon-%1-%2-%3-%4-%5")
                            .arg(name)
                            .arg(size)
                            .arg(ratio)
                            .arg(colors.ink.rgba(), 0, 16)
                            .arg(colors.tone.rgba(), 0, 16);
    QPixmap picture;
    if (QPixmapCache::find(key, &picture))
        return picture;
    const QByteArray svg = contents(QLatin1String(folder) + name + QLatin1String(".svg"));
    if (svg.isEmpty() || size <= 0)
        return {};
    picture = rendered(colored(svg, colors, lineFor(size)), size, ratio);
    QPixmapCache::insert(key, picture);
    return picture;
}

QIcon toolIcon(const QString& name, IconInk ink)
{
    return QIcon(new FamilyIconEngine(name, ink));
}

QIcon programIcon()
{
    return QIcon(new ProgramIconEngine);
}

QPixmap programIconPixmap(int size, double ratio)
{
    const QString key = QStringLiteral("velmora-program-icon-%1-%2").arg(size).arg(ratio);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture) && size > 0) {
        picture = rendered(contents(QLatin1String(programIconFile)), size, ratio);
        QPixmapCache::insert(key, picture);
    }
    return picture;
}

} // namespace velmora
