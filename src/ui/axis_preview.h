#pragma once

#include <QSize>
#include <QWidget>
#include <functional>

#include "view3d/axis_model.h"
#include "view3d/axis_setup.h"

class QPainter;

// The pictures of the axes in the axis dialogs.

namespace kelvane {

// A picture on a white sheet, which stays white on dark schemes, like the drawing area's.
class PreviewBox : public QWidget {
    Q_OBJECT

public:
    using Drawing = std::function<void(QPainter& painter, const QRectF& box)>;

    // Higher than this where the layout has more room.
    PreviewBox(const QSize& size, const QString& name, Drawing drawing);

    // Draws anew and tells assistive technology what is to be seen.
    void Show(const QString& description);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Drawing m_drawing;
};

// The work sheet with its axes: X to the right, Y up, Z towards the viewer, with marks at each unit
// (at each second, fifth or so where these would run together) and the centre in numbers. The
// drawing area's size in pixels gives the sheet's shape and scale.
void PaintSheet(QPainter& painter, const QRectF& box, const AxisSetup& setup,
                const QSize& drawArea);

// The axis cross of the 3D mode: the half axes towards the viewer, up and to the right with their
// names, the others dashed.
void PaintCross(QPainter& painter, const QRectF& box, const AxisModel& model, int angle,
                const CrossScale& scale);

} // namespace kelvane
