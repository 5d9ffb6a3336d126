#include "ui/view_dialogs.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <cmath>
#include <limits>

#include "ui/graph_sheet.h"
#include "ui/value_text.h"
#include "view3d/typed_number.h"

namespace kelvane {

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

} // namespace

NumberDialog::NumberDialog(const QString& title, const QString& explanation, QWidget* parent)
    : SettingsDialog(title, {}, parent, Buttons(Ok | Cancel | Default))
{
    auto* text = new QLabel(explanation);
    text->setWordWrap(true);
    m_form = new QFormLayout;
    m_form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_form->setVerticalSpacing(8);
    Content().setSpacing(12);
    Content().addWidget(text);
    Content().addLayout(m_form);
}

void NumberDialog::AddField(const QString& label, const QString& value, const QString& standard,
                            const QString& emptyText)
{
    constexpr int kLongest = 40;
    auto* edit = new QLineEdit;
    edit->setObjectName(QString("Text1(%1)").arg(m_fields.size()));
    edit->setMaxLength(kLongest);
    edit->setMinimumWidth(180);
    edit->setPlaceholderText(emptyText);
    m_form->addRow(label, edit);
    m_fields.push_back({edit, label, value, standard, !emptyText.isEmpty()});
}

bool NumberDialog::AskFor(Taker taker)
{
    m_taker = std::move(taker);
    return Ask();
}

void NumberDialog::ShowAccepted()
{
    for (const Field& field : m_fields)
        field.Edit->setText(field.Accepted);
}

void NumberDialog::ShowDefaults()
{
    for (const Field& field : m_fields)
        field.Edit->setText(field.Standard);
}

QWidget* NumberDialog::FirstField()
{
    return m_fields.front().Edit;
}

bool NumberDialog::TakeOver()
{
    std::vector<double> numbers;
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        const Field& field = m_fields[i];
        const bool empty = field.MayBeEmpty && field.Edit->text().trimmed().isEmpty();
        const auto number =
            empty ? std::optional(kNan) : ReadTyped(field.Edit->text().toStdString());
        if (!number)
            return Refuse({i, QString("%1 needs a number.").arg(field.Name)});
        numbers.push_back(*number);
    }
    const auto problem = m_taker(numbers);
    return !problem || Refuse(*problem);
}

bool NumberDialog::Refuse(const Problem& problem)
{
    ShowProblem(*this, *m_fields[problem.Field].Edit, windowTitle(), problem.Text);
    return false;
}

bool AskForRange(GraphSheet& sheet, QWidget* parent)
{
    NumberDialog dialog("Range Setup",
                        "What the sheet shows from edge to edge. Zoom factor and "
                        "axis center go back to 1 and (0,0).",
                        parent);
    const Interval x = sheet.RangeX();
    const auto& y = sheet.RangeY();
    const QString equal = "equal units";
    dialog.AddField("X from", ValueText(x.Low), "-10");
    dialog.AddField("X to", ValueText(x.High), "10");
    dialog.AddField("Y from", y ? ValueText(y->Low) : "", "", equal);
    dialog.AddField("Y to", y ? ValueText(y->High) : "", "", equal);
    return dialog.AskFor(
        [&](const std::vector<double>& typed) -> std::optional<NumberDialog::Problem> {
            if (!(typed[0] < typed[1]))
                return {{1, "X to must be above X from."}};
            if (std::isnan(typed[2]) != std::isnan(typed[3]))
                return {{std::isnan(typed[2]) ? 2U : 3U, "Fill in both ends of Y, or neither."}};
            const bool withY = !std::isnan(typed[2]);
            if (withY && !(typed[2] < typed[3]))
                return {{3, "Y to must be above Y from."}};
            const auto yRange = withY ? std::optional(Interval{typed[2], typed[3]}) : std::nullopt;
            if (!sheet.SetRange({typed[0], typed[1]}, yRange))
                return {{0, "This range is too large, or its ends are too close together."}};
            return std::nullopt;
        });
}

bool AskForZoom(ViewState& view, QWidget* parent)
{
    NumberDialog dialog("Zoom Setup", "2 shows twice as much as 1, 0.5 half as much.", parent);
    dialog.AddField("Zoom Factor", ValueText(view.ZoomFactor), "1");
    return dialog.AskFor(
        [&](const std::vector<double>& typed) -> std::optional<NumberDialog::Problem> {
            if (SetZoom(view, typed[0]))
                return std::nullopt;
            return {{0, QString("Zoom Factor needs a number from %1 to %2 with which neighbouring "
                                "points can still be told apart.")
                            .arg(ValueText(kMinZoom), ValueText(kMaxZoom))}};
        });
}

bool AskForCenter(ViewState& view, QWidget* parent)
{
    NumberDialog dialog("Axis Center", "The point in which the axes cross.", parent);
    dialog.AddField("X", ValueText(view.CenterX), "0");
    dialog.AddField("Y", ValueText(-view.CenterY), "0");
    return dialog.AskFor([&](const std::vector<double>& typed)
                             -> std::optional<NumberDialog::Problem> {
        if (SetCenter(view, {typed[0], typed[1]}))
            return std::nullopt;
        return {{0, "So far out neighbouring points cannot be told apart at this zoom factor."}};
    });
}

} // namespace kelvane
