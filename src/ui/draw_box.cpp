#include "ui/draw_box.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRubberBand>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvane {

namespace {

constexpr double kWheelStep = 120; // eighths of a degree
constexpr double kSmallestDrag = 4;

// Pixel middles are whole numbers for the graph and halves for Qt.
PixelPoint ToPixel(QPointF position)
{
    return {position.x() - 0.5, position.y() - 0.5};
}

QRectF RectOf(const PixelBox& box)
{
    return QRectF(QPointF(box.From.X + 0.5, box.From.Y + 0.5),
                  QPointF(box.To.X + 0.5, box.To.Y + 0.5))
        .normalized();
}

} // namespace

DrawBox::DrawBox(QWidget* parent)
    : QWidget(parent)
{
    setObjectName("DrawBox");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(tr("Graph"));
    m_zoomBox = new QRubberBand(QRubberBand::Rectangle, this);
    m_zoomBox->setObjectName("ZoomBox");
    UpdateCursor();
}

PixelSize DrawBox::Extent() const
{
    return {static_cast<double>(std::max(width(), 1)), static_cast<double>(std::max(height(), 1))};
}

QImage& DrawBox::NewImage()
{
    const double fineness = devicePixelRatioF();
    const PixelSize extent = Extent();
    const QSize pixels(static_cast<int>(std::ceil(extent.Width * fineness)),
                       static_cast<int>(std::ceil(extent.Height * fineness)));
    if (m_image.size() != pixels || m_image.devicePixelRatio() != fineness) {
        m_image = QImage(pixels, QImage::Format_RGB32);
        m_image.setDevicePixelRatio(fineness);
    }
    m_image.fill(Qt::white);
    return m_image;
}

void DrawBox::ForgetBox()
{
    m_box.reset();
    m_zoomBox->hide();
}

void DrawBox::SetPicking(bool on)
{
    m_picking = on;
    UpdateCursor();
}

void DrawBox::SetSpaceHeld(bool held)
{
    m_spaceHeld = held;
    UpdateCursor();
}

void DrawBox::SetMarker(std::optional<QColor> color)
{
    m_marker = color;
    update();
}

void DrawBox::UpdateCursor()
{
    if (m_drag == Drag::Graph)
        setCursor(Qt::ClosedHandCursor);
    else
        setCursor(m_spaceHeld ? Qt::OpenHandCursor : Qt::CrossCursor);
}

void DrawBox::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    // After a resize the old picture stands in the middle until the new one is drawn.
    const QSizeF size = m_image.deviceIndependentSize();
    painter.drawImage(QPointF(std::floor((width() - size.width()) / 2),
                              std::floor((height() - size.height()) / 2)),
                      m_image);
    if (m_marker) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(*m_marker, 2));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

void DrawBox::resizeEvent(QResizeEvent* /*event*/)
{
    Q_EMIT resized();
}

void DrawBox::mousePressEvent(QMouseEvent* event)
{
    setFocus(Qt::MouseFocusReason);
    m_from = event->position();
    const bool left = event->button() == Qt::LeftButton;
    if (event->button() == Qt::MiddleButton || (left && m_spaceHeld)) {
        m_drag = Drag::Graph;
    } else if (left && m_picking) {
        SetPicking(false);
        Q_EMIT picked(ToPixel(event->position()));
    } else if (left) {
        m_drag = Drag::Box;
    }
    UpdateCursor();
}

void DrawBox::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton) // the release came to nobody
        EndDrag();
    const QPointF now = event->position();
    Q_EMIT pointed(ToPixel(now));
    if (m_drag == Drag::Box && (now - m_from).manhattanLength() >= kSmallestDrag) {
        const QPointF inside(std::clamp(now.x(), 0.0, double(width())),
                             std::clamp(now.y(), 0.0, double(height())));
        m_box = PixelBox{ToPixel(m_from), ToPixel(inside)};
        m_zoomBox->setGeometry(RectOf(*m_box).toAlignedRect());
        m_zoomBox->show();
    } else if (m_drag == Drag::Graph && now != m_from) {
        const QPointF by = now - m_from;
        m_from = now;
        Q_EMIT moved(by.x(), by.y());
    }
}

void DrawBox::mouseReleaseEvent(QMouseEvent* event)
{
    // A click without a drag takes the box away.
    if (m_drag == Drag::Box && (event->position() - m_from).manhattanLength() < kSmallestDrag)
        ForgetBox();
    EndDrag();
}

void DrawBox::EndDrag()
{
    const Drag ended = std::exchange(m_drag, Drag::None);
    if (ended == Drag::None)
        return;
    UpdateCursor();
    if (ended == Drag::Graph)
        Q_EMIT movedThere();
}

void DrawBox::wheelEvent(QWheelEvent* event)
{
    if (event->angleDelta().y() != 0)
        Q_EMIT wheeled(event->angleDelta().y() / kWheelStep, ToPixel(event->position()));
    event->accept();
}

void DrawBox::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space) {
        SetSpaceHeld(true);
    } else if (event->key() == Qt::Key_Escape) {
        SetPicking(false);
        ForgetBox();
        Q_EMIT escapePressed();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void DrawBox::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
        m_spaceHeld = false;
    UpdateCursor();
    QWidget::keyReleaseEvent(event);
}

void DrawBox::focusOutEvent(QFocusEvent* event)
{
    m_spaceHeld = false;
    UpdateCursor();
    QWidget::focusOutEvent(event);
}

void DrawBox::contextMenuEvent(QContextMenuEvent* event)
{
    Q_EMIT menuWanted(event->globalPos());
}

} // namespace kelvane
