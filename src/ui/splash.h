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
    // Of the whole program, while it is up: what dismisses it goes no further.
    bool eventFilter(QObject* target, QEvent* event) override;

private:
    bool m_dismissed = false;
};

} // namespace kelvane
