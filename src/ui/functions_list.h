#pragma once

#include <QDialog>

namespace kelvane {

// The reference window of the functions and the main shortcut keys ("FunctionsList").
class FunctionsList : public QDialog {
    Q_OBJECT

public:
    explicit FunctionsList(QWidget* parent);
};

} // namespace kelvane
