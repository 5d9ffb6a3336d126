#pragma once

#include <QWidget>
#include <array>

class QLabel;
class QTimer;

namespace kelvane {

// The lines of the Settings panel, by index.
enum class InfoLine { AxisCenter, ZoomFactor, Quality, EachDivision, Speed };
inline constexpr int kInfoLines = 5;

// The status panel ("Frame1", "Settings"): five lines with live values. A line whose value changes
// lights up and fades back.
class SettingsRegion : public QWidget {
    Q_OBJECT

public:
    explicit SettingsRegion(QWidget* parent = nullptr);

    // Sets what stands behind the line's name, for example "2X".
    void ShowValue(InfoLine line, const QString& value);

    // How many of the three speed markers are lit, 0 to 3.
    void ShowSpeedMarks(int count);

private:
    void FadeLine(std::size_t line);

    class InfoLabel;

    struct Line {
        InfoLabel* Info = nullptr; // "Info(i)"
        QTimer* Timer = nullptr;   // "Timer15" to "Timer18", and one for the speed
        int Fade = 0;
    };
    std::array<Line, kInfoLines> m_lines;
    std::array<QLabel*, 3> m_marks{}; // "SpeedShape(i)"
};

} // namespace kelvane
