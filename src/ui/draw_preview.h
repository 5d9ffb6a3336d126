#pragma once

#include <QWidget>
#include <cstdint>

#include "view3d/draw_settings.h"

namespace kelvane {

enum class SheetKind : std::uint8_t { Sheet2D, Sheet3D };

// A small graph as settings would draw it, on a piece of the sheet: a wave, or a surface.
class DrawPreview : public QWidget {
    Q_OBJECT

public:
    explicit DrawPreview(QWidget* parent = nullptr);

    void Show(const DrawSettings& settings, SheetKind kind);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DrawSettings m_settings;
    SheetKind m_kind = SheetKind::Sheet2D;
};

// A line of the formula editor and a graph with axes, on a ground of some colour.
class SheetPreview : public QWidget {
    Q_OBJECT

public:
    explicit SheetPreview(QWidget* parent = nullptr);

    void Show(Rgb ground, Rgb graph);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Rgb m_ground = kWhite;
    Rgb m_graph;
};

} // namespace kelvane
