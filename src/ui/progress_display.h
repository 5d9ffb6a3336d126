#pragma once

#include <QColor>
#include <QWidget>

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
    class Segments;

    Segments* m_segments = nullptr; // "PercBox"
    QLabel* m_percent = nullptr;    // "Digital"
    int m_lit = 0;
};

} // namespace kelvane
