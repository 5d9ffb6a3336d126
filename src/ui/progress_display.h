#pragma once

#include <QColor>
#include <QWidget>
#include <array>

class QLabel;

namespace kelvane {

// The progress display ("ProgressBar1"): 31 segments and a percentage ("Digital").
class ProgressDisplay : public QWidget {
    Q_OBJECT

public:
    static constexpr int kSegments = 31;

    explicit ProgressDisplay(QWidget* parent = nullptr);

    void InitPerc();                 // "0%", no segment lit
    void PercentGo(double fraction); // 0 to 1
    void SetColor(const QColor& color);

    int LitSegments() const { return m_lit; }

private:
    void ShowSegments();

    std::array<QWidget*, kSegments> m_segments{}; // "Shape4(i)"
    QLabel* m_percent = nullptr;                  // "Digital"
    QColor m_color{0, 175, 0};
    int m_lit = 0;
};

} // namespace kelvane
