#include "ui/view_dialogs.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>
#include <limits>

#include "ui/graph_sheet.h"
#include "ui/value_text.h"

namespace kelvane {

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// A number with a point or, if it has no point, a comma.
std::optional<double> ReadTyped(QString text)
{
    text = text.trimmed();
    text.replace(QChar(0x2212), '-');
    if (!text.contains('.'))
        text.replace(',', '.');
    bool isNumber = false;
    const double number = QLocale::c().toDouble(text, &isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

} // namespace

NumberDialog::NumberDialog(const QString& title, const QString& heading, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    auto* text = new QLabel(heading);
    text->setWordWrap(true);
    m_form = new QFormLayout;
    m_form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_form->setVerticalSpacing(8);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel |
                                         QDialogButtonBox::RestoreDefaults);
    QPushButton* standard = buttons->button(QDialogButtonBox::RestoreDefaults);
    standard->setText("Default");
    standard->setAutoDefault(false);
    connect(standard, &QPushButton::clicked, this, &NumberDialog::FullR);
    connect(buttons, &QDialogButtonBox::accepted, this, &NumberDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(12);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(text);
    layout->addLayout(m_form);
    layout->addWidget(buttons);
}

void NumberDialog::AddField(const QString& label, const QString& value, const QString& standard,
                            const QString& emptyText)
{
    constexpr int kLongest = 40;
    auto* edit = new QLineEdit(value);
    edit->setObjectName(QString("Text1(%1)").arg(m_fields.size()));
    edit->setMaxLength(kLongest);
    edit->setMinimumWidth(180);
    edit->setPlaceholderText(emptyText);
    connect(edit, &QLineEdit::textEdited, edit, [edit] { edit->setStyleSheet({}); });
    m_form->addRow(label, edit);
    m_fields.push_back({edit, label, standard, !emptyText.isEmpty()});
}

bool NumberDialog::Ask(Taker taker)
{
    m_taker = std::move(taker);
    m_fields.front().Edit->setFocus();
    m_fields.front().Edit->selectAll();
    return exec() == Accepted;
}

void NumberDialog::FullR()
{
    for (const Field& field : m_fields) {
        field.Edit->setText(field.Standard);
        field.Edit->setStyleSheet({});
    }
    m_fields.front().Edit->setFocus();
    m_fields.front().Edit->selectAll();
}

void NumberDialog::accept()
{
    std::vector<double> numbers;
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        const Field& field = m_fields[i];
        const bool empty = field.MayBeEmpty && field.Edit->text().trimmed().isEmpty();
        const auto number = empty ? std::optional(kNan) : ReadTyped(field.Edit->text());
        if (!number)
            return ShowProblem({i, QString("%1 needs a number.").arg(field.Name)});
        numbers.push_back(*number);
    }
    if (const auto problem = m_taker(numbers))
        return ShowProblem(*problem);
    QDialog::accept();
}

void NumberDialog::ShowProblem(const Problem& problem)
{
    QMessageBox box(QMessageBox::NoIcon, windowTitle(), problem.Text, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
    QLineEdit* edit = m_fields[problem.Field].Edit;
    edit->setStyleSheet("border: 1px solid #c0392b;");
    edit->setFocus();
    edit->selectAll();
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
    return dialog.Ask(
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
    return dialog.Ask(
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
    return dialog.Ask([&](const std::vector<double>& typed)
                          -> std::optional<NumberDialog::Problem> {
        if (SetCenter(view, {typed[0], typed[1]}))
            return std::nullopt;
        return {{0, "So far out neighbouring points cannot be told apart at this zoom factor."}};
    });
}

} // namespace kelvane
