#pragma once

#include <QImage>
#include <QWidget>
#include <optional>

#include "graph/view_tools.h"

class QRubberBand;

namespace kelvane {

// The drawing surface on screen: shows a kept image and tells what the mouse does on it. It knows
// nothing of what the image shows. Positions are pixels of the widget, whole numbers pixel middles.
class DrawBox : public QWidget {
    Q_OBJECT

public:
    explicit DrawBox(QWidget* parent = nullptr);

    // The kept image, made anew in the widget's size and the screen's fineness. Whoever paints on
    // it calls update() then.
    QImage& NewImage();
    QImage& Image() { return m_image; }

    // The size that NewImage would have, in pixels of the widget.
    PixelSize Extent() const;

    // The rectangle last dragged, until ForgetBox; shown as an outline ("ZoomBox").
    const std::optional<PixelBox>& Box() const { return m_box; }
    void ForgetBox();

    // While on, the next click picks a point and drags no box.
    void SetPicking(bool on);
    bool IsPicking() const { return m_picking; }

    // Whether the graph is being dragged.
    bool IsMovingGraph() const { return m_drag == Drag::Graph; }

    // While held, the left button moves the graph.
    void SetSpaceHeld(bool held);

    // The marker at the waiting place: a frame around the area, in one of two colours.
    void SetMarker(std::optional<QColor> color);

    QSize sizeHint() const override { return {720, 600}; }
    QSize minimumSizeHint() const override { return {240, 160}; }

Q_SIGNALS:
    void pointed(kelvane::PixelPoint at); // the pointer is there
    void picked(kelvane::PixelPoint at);
    void moved(double right, double down);              // dragged by the middle button or Space
    void movedThere();                                  // the drag has ended
    void wheeled(double steps, kelvane::PixelPoint at); // positive: away from the user
    void menuWanted(QPoint globalPosition);
    void resized();
    void escapePressed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    enum class Drag : std::uint8_t { None, Box, Graph };

    void UpdateCursor();
    void EndDrag();

    QImage m_image;
    QRubberBand* m_zoomBox = nullptr; // "ZoomBox": shows m_box
    std::optional<PixelBox> m_box;
    std::optional<QColor> m_marker;
    QPointF m_from; // of the drag: where it began, or was last seen
    Drag m_drag = Drag::None;
    bool m_picking = false;
    bool m_spaceHeld = false;
};

} // namespace kelvane
