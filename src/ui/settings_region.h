#pragma once

#include <QWidget>
#include <array>
#include <cstdint>

#include "graph/draw_driver.h"

class QLabel;
class QTimer;

namespace kelvane {

// The lines of the Settings panel, by index.
enum class InfoLine { AxisCenter, ZoomFactor, Quality, EachDivision, Speed };
inline constexpr int kInfoLines = 5;

// The status panel ("Frame1", "Settings"): five lines with live values, and below
// them what the last draw left open. A line whose value changes
// lights up and fades back.
class SettingsRegion : public QWidget {
    Q_OBJECT

public:
    explicit SettingsRegion(QWidget* parent = nullptr);

    // Sets what stands behind the line's name, for example "2X".
    void ShowValue(InfoLine line, const QString& value);

    // The speed of a draw, and the marks that it lights; nothing for a draw of few samples.
    void ShowSpeed(const DrawStats& stats);

    // What the graph lacks: that its draw was stopped, or how many pixels are hatched. Nothing
    // where it is whole.
    void ShowLacks(DrawEnd end, std::int64_t unresolvedPixels);

private:
    void ShowSpeedMarks(int lit); // of the three
    void FadeLine(std::size_t line);

    class InfoLabel;

    struct Line {
        InfoLabel* Info = nullptr; // "Info(i)"
        QTimer* Timer = nullptr;   // "Timer15" to "Timer18", and one for the speed
        int Fade = 0;
    };
    std::array<Line, kInfoLines> m_lines;
    std::array<QLabel*, 3> m_marks{}; // "SpeedShape(i)"
    QLabel* m_unresolved = nullptr;   // "Unresolved", beside the marks
};

} // namespace kelvane
