#pragma once

#include <QWidget>

namespace kelvane {

// The splash: the program's name, its version and what it does. A click or a key dismisses it.
class Splash : public QWidget {
    Q_OBJECT

public:
    Splash();

    bool IsDismissed() const { return m_dismissed; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool m_dismissed = false;
};

} // namespace kelvane
