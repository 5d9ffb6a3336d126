#pragma once

#include <QMenu>

namespace kelvane {

enum class Command;

// The pop-up menu of the draw area ("DrawSheetPopup").
class GraphMenu : public QMenu {
    Q_OBJECT

public:
    explicit GraphMenu(bool showsGrid);

Q_SIGNALS:
    void cleanWanted();
    void copyWanted();
    void gridToggled(bool on);
    void chosen(kelvane::Command command);

private:
    QAction* Add(const char* name, const char* text, const char* icon);
    void AddCommand(const char* name, const char* text, const char* icon, Command command);
};

} // namespace kelvane
