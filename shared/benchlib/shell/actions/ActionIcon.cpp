#include "shell/actions/ActionIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Half-way lightness of Qt's colours.
constexpr int Middle = 128;

bool isDark(const QColor& color) { return color.lightness() < Middle; }

/// Dark strokes become light ones of the same hue.
void lighten(QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = QColor::fromRgb(row[x]);
            const int lightness = 255 - color.lightness() / 2;
            const QColor light = QColor::fromHsl(color.hslHue(), color.hslSaturation(), lightness);
            row[x] = (light.rgb() & RGB_MASK) | (row[x] & ~RGB_MASK);
        }
    }
}

class ActionIconEngine : public QIconEngine {
public:
    explicit ActionIconEngine(const QString& path) : m_path(path), m_drawing(path) { }

    QIconEngine* clone() const override { return new ActionIconEngine(m_path); }
    bool isNull() override { return m_drawing.isNull(); }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return m_drawing.availableSizes(mode, state);
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const double scale = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap(rect.size() * scale, mode, state));
    }

    /// The size is in pixels of the device.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        const QPalette palette = QGuiApplication::palette();
        const QColor selected = palette.color(QPalette::HighlightedText);
        const bool onDark = isDark(palette.color(QPalette::Window));
        const QString key = u"%1 %2x%3 %4 %5 %6"_s.arg(m_path)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(mode)
                                .arg(selected.name())
                                .arg(onDark);
        QPixmap result;
        if (QPixmapCache::find(key, &result))
            return result;
        // A disabled icon is the style's own matter; so are its colours.
        const bool asText = mode == QIcon::Selected;
        QImage image = m_drawing.pixmap(size, 1.0, asText ? QIcon::Normal : mode, state)
                           .toImage()
                           .convertToFormat(QImage::Format_ARGB32);
        if (asText) {
            QPainter painter(&image);
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(image.rect(), selected);
        } else if (onDark && mode != QIcon::Disabled) {
            lighten(image);
        }
        result = QPixmap::fromImage(image);
        QPixmapCache::insert(key, result);
        return result;
    }

private:
    QString m_path;
    QIcon m_drawing;
};

} // namespace

QIcon actionIcon(const QString& name)
{
    const QString path = u":/icons/"_s + name + u".svg"_s;
    return QFile::exists(path) ? QIcon(new ActionIconEngine(path)) : QIcon();
}
