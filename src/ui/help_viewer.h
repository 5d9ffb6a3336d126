#pragma once

#include <QDialog>

class QTextBrowser;

namespace kelvane {

// The help window: pages in Markdown, kept in the program itself, with links between them. It does
// not block the window or dialog that it helps with.
class HelpViewer : public QDialog {
    Q_OBJECT

public:
    explicit HelpViewer(QWidget* parent);

    // Opens the page of a topic; that of an unknown topic is the contents page.
    void Open(const QString& topic);

protected:
    void changeEvent(QEvent* event) override;

private:
    void UsePalette();

    QTextBrowser* m_page = nullptr; // "HelpPage"
};

// Shows the help page of a topic ("Calculation Setup", "Value Table") in the one help window of the
// program, which comes to the front and, while the parent's dialog is modal, belongs to it.
void ShowHelp(QWidget* parent, const QString& topic);

} // namespace kelvane
