#pragma once

#include <QWidget>
#include <array>

#include "graph/view_tools.h"
#include "ui/editor_keys.h"

class QLabel;
class QPushButton;
class QSlider;

namespace kelvane {

class DrawBox;

inline constexpr int kTopKeys = 6;

// The draw region ("DrawFrame"): the row of keys with the pointer's coordinates, the drawing
// surface, and the two zoom sliders.
class GraphRegion : public QWidget {
    Q_OBJECT

public:
    explicit GraphRegion(QWidget* parent = nullptr);

    DrawBox& Box() { return *m_box; }
    QPushButton& Key(TopKey key) { return *m_keys[static_cast<std::size_t>(key)]; }

    // "(x,y)" with as many digits as tell the point and its neighbour apart; nothing without both.
    void ShowAnswer(const std::optional<WorldPoint>& point,
                    const std::optional<WorldPoint>& neighbour);

    // While a draw runs the Draw key reads "Stop".
    void ShowDrawing(bool drawing);

    // Puts the sliders where the zoom factor is.
    void ShowZoom(double zoomFactor);

Q_SIGNALS:
    void topKeyPressed(int index);
    void zoomSlid(double zoomFactor); // by a slider

private:
    QWidget* BuildKeys();
    QWidget* BuildSliders();
    void TakeSliders();

    std::array<QPushButton*, kTopKeys> m_keys{}; // "TopKey(i)"
    QLabel* m_answer = nullptr;                  // "Answer"
    DrawBox* m_box = nullptr;                    // "DrawBox"
    std::array<QSlider*, 2> m_sliders{}; // "Slider1(i)": zoom in octaves, and within an octave
};

} // namespace kelvane
