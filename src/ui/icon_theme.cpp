#include "ui/icon_theme.h"

#include <QByteArray>
#include <QColor>
#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <utility>

// The linker drops a static library's resources unless something asks for them; the macro must
// stand outside of all namespaces.
static void LoadDrawings()
{
    Q_INIT_RESOURCE(icons);
}

namespace kelvane {
namespace {

// Share of the ground in a disabled icon, if the palette does not tell disabled texts from others.
constexpr double kMuting = 0.6;

QColor Mix(const QColor& from, const QColor& to, double share)
{
    const auto mixed = [share](int a, int b) { return qRound(a + share * (b - a)); };
    return {mixed(from.red(), to.red()), mixed(from.green(), to.green()),
            mixed(from.blue(), to.blue())};
}

QColor StrokeColor(QIcon::Mode mode, QPalette::ColorRole role)
{
    const QPalette palette = QGuiApplication::palette();
    const QColor normal = palette.color(QPalette::Active, role);
    if (mode == QIcon::Selected)
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    if (mode != QIcon::Disabled)
        return normal;
    const QColor disabled = palette.color(QPalette::Disabled, role);
    const QColor ground = palette.color(QPalette::Active, QPalette::Button);
    return disabled == normal ? Mix(normal, ground, kMuting) : disabled;
}

class ThemeIconEngine : public QIconEngine {
public:
    ThemeIconEngine(QString name, QByteArray drawing, QPalette::ColorRole role)
        : m_name(std::move(name))
        , m_drawing(std::move(drawing))
        , m_role(role)
    {
    }

    QIconEngine* clone() const override { return new ThemeIconEngine(m_name, m_drawing, m_role); }

    // Straight from the drawing, so that it is sharp on scaled and on vector devices, too.
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        Render(*painter, rect, StrokeColor(mode, m_role));
    }

    // The size is in device pixels.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        const QColor color = StrokeColor(mode, m_role);
        const QString key = QStringLiteral("kelvane-icon/%1/%2x%3/%4")
                                .arg(m_name)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(color.name(QColor::HexArgb));
        QPixmap pixmap;
        if (size.isEmpty() || QPixmapCache::find(key, &pixmap))
            return pixmap;
        pixmap = QPixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        Render(painter, pixmap.rect(), color);
        painter.end();
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

private:
    void Render(QPainter& painter, const QRect& rect, const QColor& color) const
    {
        QSvgRenderer renderer(QByteArray(m_drawing).replace("currentColor", color.name().toUtf8()));
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(&painter, rect);
    }

    QString m_name;
    QByteArray m_drawing;
    QPalette::ColorRole m_role;
};

} // namespace

QIcon ThemeIcon(const QString& name, QPalette::ColorRole role)
{
    LoadDrawings();
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new ThemeIconEngine(name, file.readAll(), role));
}

} // namespace kelvane
