#pragma once

#include <QDialog>

class QLineEdit;
class QVBoxLayout;

namespace kelvane {

// The colour of what is wrong or has failed, on light and dark grounds.
inline constexpr const char* kWrongColor = "#c0392b";

// Shows a message box (OK only) over the dialog, then marks and focuses the field at fault until it
// is edited.
void ShowProblem(QWidget& dialog, QLineEdit& field, const QString& title, const QString& text);

// What all settings dialogs have in common. Each is made once and kept, hidden between uses: a view
// on a settings struct, which is the store of the accepted values. A dialog of its own puts its
// controls into Content() and says how they are filled and read.
//
// OK ("Command1") accepts, Cancel ("Command2"), Esc and closing show the accepted values again,
// Default ("Command3") changes only the controls, Help ("Command4") opens the help page of the
// dialog's title.
class SettingsDialog : public QDialog {
    Q_OBJECT

public:
    enum Button { Ok = 1, Cancel = 2, Default = 4, Help = 8 };
    Q_DECLARE_FLAGS(Buttons, Button)

    // The title is the window's and the help page's; an empty heading shows none.
    SettingsDialog(const QString& title, const QString& heading, QWidget* parent,
                   Buttons buttons = Buttons(Ok | Cancel | Default | Help));

    // Fills the controls and shows the dialog until it is closed; true when OK has accepted them.
    bool Ask();

    void accept() override;
    void reject() override;

Q_SIGNALS:
    void helpRequested(const QString& topic);

protected:
    QVBoxLayout& Content() { return *m_content; }

    // Puts the accepted values into the controls; before the dialog shows and after Cancel.
    virtual void ShowAccepted() = 0;

    // Puts the default values into the controls.
    virtual void ShowDefaults() {}

    // Checks the controls and writes what they say. False leaves the dialog open, after a message.
    virtual bool TakeOver() = 0;

    // What has the focus, its text selected, when the dialog opens.
    virtual QWidget* FirstField() { return nullptr; }

private:
    void FocusFirst();

    QVBoxLayout* m_content = nullptr;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(SettingsDialog::Buttons)

} // namespace kelvane
