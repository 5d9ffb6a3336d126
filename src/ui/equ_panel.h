#pragma once

#include <QWidget>

class QLineEdit;
class QPushButton;

namespace kelvane {

class FormulaEditor;

// The equation keypad ("EquPanel"): its buttons type into the formula editor what a user would
// type, as key events, and into a line of its own ("Screen"). It stays on top and leaves the focus
// with the editor.
class EquPanel : public QWidget {
    Q_OBJECT

public:
    EquPanel(FormulaEditor& editor, QWidget* parent);

    void Open();

    // The display, where powers stand as "^(" ... ")".
    QString ScreenText() const;

    // Whether the keypad is open, so that its input can be told from typing.
    bool IsOpen() const { return m_open; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void AddKey(const QString& name, const QString& caption, const QString& keys, int row,
                int column, int columns = 1);
    void PressPower();
    void EndPower();
    void FollowEditor();

    // Sends keys to a control as keystrokes; "{^}", "{ENTER}" and the like stand for keys.
    void Equp(QWidget& target, const QString& keys);

    FormulaEditor& m_editor;
    QLineEdit* m_screen = nullptr;  // "Screen"
    QPushButton* m_power = nullptr; // "Power"
    bool m_typingPower = false;
    bool m_open = false;
    bool m_placed = false;   // where the user may have moved it
    bool m_pressing = false; // the power key itself is at work
};

} // namespace kelvane
