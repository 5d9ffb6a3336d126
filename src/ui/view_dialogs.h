#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "graph/view_tools.h"
#include "ui/settings_dialog.h"

class QFormLayout;
class QLineEdit;

namespace kelvane {

class GraphSheet;

// A dialog of numbers. OK takes the numbers only when all are valid: else a message says what is
// wrong and the field at fault is marked.
class NumberDialog : public SettingsDialog {
    Q_OBJECT

public:
    struct Problem {
        std::size_t Field = 0;
        QString Text;
    };
    // Tells what is wrong with the numbers, or takes them. Called with OK.
    using Taker = std::function<std::optional<Problem>(const std::vector<double>&)>;

    NumberDialog(const QString& title, const QString& explanation, QWidget* parent);

    // A field with its value now and by default. An empty field is allowed where emptyText is not
    // empty, which then stands in it, greyed; its number is NaN.
    void AddField(const QString& label, const QString& value, const QString& standard,
                  const QString& emptyText = {});

    // Shows the dialog; true when OK has taken the numbers.
    bool AskFor(Taker taker);

protected:
    void ShowAccepted() override;
    void ShowDefaults() override;
    bool TakeOver() override;
    QWidget* FirstField() override;

private:
    struct Field {
        QLineEdit* Edit = nullptr;
        QString Name;
        QString Accepted;
        QString Standard;
        bool MayBeEmpty = false;
    };

    bool Refuse(const Problem& problem);

    QFormLayout* m_form = nullptr;
    std::vector<Field> m_fields;
    Taker m_taker;
};

// The range, zoom and axis centre dialogs. True when the view has changed.
bool AskForRange(GraphSheet& sheet, QWidget* parent);
bool AskForZoom(ViewState& view, QWidget* parent);
bool AskForCenter(ViewState& view, QWidget* parent);

} // namespace kelvane
