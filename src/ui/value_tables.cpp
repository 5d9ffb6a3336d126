#include "ui/value_tables.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <utility>

#include "engine/number_text.h"
#include "ui/editor_page.h"
#include "ui/help_viewer.h"
#include "ui/safe_file.h"
#include "ui/settings_dialog.h"

namespace kelvane {

namespace {

constexpr const char* kTopic = "Value Table";
constexpr const char* kNoValue = "no value here";
constexpr int kMargin = 12;
constexpr int kColumnWidth = 136;
constexpr int kLongestStep = 40; // characters

QPushButton* MakeKey(const char* text, const char* name, const char* toolTip)
{
    auto* key = new QPushButton(text);
    key->setObjectName(name);
    key->setToolTip(toolTip);
    return key;
}

} // namespace

ValueTableBase::ValueTableBase(Dependent variable, TableProvider provider, QWidget* parent)
    : QDialog(parent)
    , m_variable(variable)
    , m_columns(variable == Dependent::Z ? 3 : 2)
    , m_provider(std::move(provider))
{
    setWindowTitle(kTopic);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(12);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(BuildHeading());
    layout->addLayout(BuildRows());
    layout->addLayout(BuildPaging());
    if (m_variable == Dependent::Z)
        layout->addLayout(BuildAxisChoice());
    layout->addWidget(BuildButtons());
    auto* next = new QShortcut(QKeySequence(Qt::Key_PageDown), this);
    connect(next, &QShortcut::activated, this, &ValueTableBase::nextPage);
    auto* previous = new QShortcut(QKeySequence(Qt::Key_PageUp), this);
    connect(previous, &QShortcut::activated, this, &ValueTableBase::previousPage);
    auto* copy = new QShortcut(QKeySequence::Copy, this);
    connect(copy, &QShortcut::activated, this, &ValueTableBase::copyTable);
}

// ---- building

QWidget* ValueTableBase::BuildHeading()
{
    auto* heading = new QWidget;
    auto* title = new QLabel(kTopic);
    title->setObjectName("Title");
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    m_equation = new QLabel;
    m_equation->setObjectName("EquationText");
    m_equation->setTextFormat(Qt::RichText);
    m_equation->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto* layout = new QVBoxLayout(heading);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(title);
    layout->addWidget(m_equation);
    return heading;
}

QGridLayout* ValueTableBase::BuildRows()
{
    constexpr const char* kHeadings[] = {"X - Values", "Y - Values", "Z - Values"};
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    for (int column = 0; column < m_columns; ++column) {
        auto* heading = new QLabel(kHeadings[column]);
        heading->setAlignment(Qt::AlignRight);
        heading->setContentsMargins(0, 0, 4, 0); // above the digits
        grid->addWidget(heading, 0, column);
    }
    for (int row = 0; row < kTableRows; ++row) {
        for (int column = 0; column < m_columns; ++column) {
            QLineEdit* box = MakeBox(QString("Text%1(%2)").arg(column + 1).arg(row), column, row);
            box->setAccessibleName(QString("%1, row %2").arg(kHeadings[column]).arg(row + 1));
            grid->addWidget(box, row + 1, column);
        }
    }
    return grid;
}

QLineEdit* ValueTableBase::MakeBox(const QString& name, int column, int row)
{
    auto* box = new QLineEdit;
    box->setObjectName(name);
    box->setReadOnly(true);
    box->setAlignment(Qt::AlignRight);
    box->setMinimumWidth(kColumnWidth);
    box->installEventFilter(this);
    m_boxes[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = box;
    return box;
}

QBoxLayout* ValueTableBase::BuildPaging()
{
    m_step = new QLineEdit;
    m_step->setObjectName(m_variable == Dependent::Z ? "StepText" : "Text3");
    m_step->setMaxLength(kLongestStep);
    m_step->setAlignment(Qt::AlignRight);
    m_step->setFixedWidth(kColumnWidth / 2);
    m_step->setToolTip("From one row to the next");
    m_step->installEventFilter(this);
    connect(m_step, &QLineEdit::textEdited, this, &ValueTableBase::TakeStep);
    auto* caption = new QLabel("S&tep");
    caption->setBuddy(m_step);
    QPushButton* previous = MakeKey("&Previous", "Command6", "The five rows before (Page Up)");
    connect(previous, &QPushButton::clicked, this, &ValueTableBase::previousPage);
    QPushButton* next = MakeKey("&Next", "Command5", "The next five rows (Page Down)");
    connect(next, &QPushButton::clicked, this, &ValueTableBase::nextPage);
    auto* layout = new QHBoxLayout;
    layout->setSpacing(8);
    layout->addWidget(caption);
    layout->addWidget(m_step);
    layout->addStretch();
    layout->addWidget(previous);
    layout->addWidget(next);
    return layout;
}

QBoxLayout* ValueTableBase::BuildAxisChoice()
{
    m_alongX = new QRadioButton("&x");
    m_alongX->setObjectName("Option1");
    m_alongX->setAccessibleName("Pages move along x");
    m_alongX->setChecked(true);
    m_alongY = new QRadioButton("&y");
    m_alongY->setObjectName("Option2");
    m_alongY->setAccessibleName("Pages move along y");
    auto* layout = new QHBoxLayout;
    layout->setSpacing(16);
    layout->addWidget(new QLabel("Pages move along"));
    layout->addWidget(m_alongX);
    layout->addWidget(m_alongY);
    layout->addStretch();
    return layout;
}

QWidget* ValueTableBase::BuildButtons()
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help);
    buttons->button(QDialogButtonBox::Close)->setObjectName("Command1");
    buttons->button(QDialogButtonBox::Close)->setText("Close");
    buttons->button(QDialogButtonBox::Help)->setObjectName("Command4");
    buttons->button(QDialogButtonBox::Help)->setText("&Help");
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, [this] { ShowHelp(this, kTopic); });
    QPushButton* copy = MakeKey("&Copy", "CopyTable", "The whole table, for a spreadsheet");
    buttons->addButton(copy, QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this, &ValueTableBase::copyTable);
    QPushButton* save = MakeKey("&Save CSV...", "SaveCsv", "The whole table into a file");
    buttons->addButton(save, QDialogButtonBox::ActionRole);
    connect(save, &QPushButton::clicked, this, &ValueTableBase::AskForCsv);
    for (QPushButton* key : findChildren<QPushButton*>() + buttons->findChildren<QPushButton*>())
        key->setAutoDefault(false); // Enter presses the one that has the focus, see keyPressEvent
    return buttons;
}

// ---- what is shown

bool ValueTableBase::Open()
{
    auto source = m_provider();
    if (!source)
        return false;
    m_source = std::move(*source);
    m_state = {};
    m_step->setText("1");
    MarkStep({});
    if (m_alongX != nullptr)
        m_alongX->setChecked(true);
    ShowEquation();
    Fill();
    show();
    raise();
    activateWindow();
    m_step->setFocus();
    m_step->selectAll();
    return true;
}

void ValueTableBase::ShowEquation()
{
    const RichPage line{PlainToRich(m_source.Line)};
    m_equation->setText(HtmlOf(line));
    m_equation->setAccessibleName(QString::fromStdString(m_source.Line));
}

void ValueTableBase::Fill()
{
    m_rows = FillTable(m_state, m_source.Shown, m_source.Rule);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const TableRow& row = m_rows[i];
        const std::array values{row.X, row.Y, row.Z};
        for (std::size_t column = 0; column < values.size(); ++column) {
            QLineEdit* box = m_boxes[i][column];
            if (box == nullptr)
                continue; // no z on a 2D sheet
            const bool missing = static_cast<int>(column) == m_columns - 1 && !row.HasValue;
            box->setText(QString::fromStdString(ShortestText(values[column])));
            box->setEnabled(!missing);
            box->setToolTip(missing ? kNoValue : "");
            box->setAccessibleDescription(missing ? kNoValue : "");
        }
    }
}

// ---- paging and the step

void ValueTableBase::nextPage()
{
    Turn(PageTurn::Next);
}

void ValueTableBase::previousPage()
{
    Turn(PageTurn::Previous);
}

void ValueTableBase::Turn(PageTurn turn)
{
    const bool alongY = m_alongY != nullptr && m_alongY->isChecked();
    if (TurnPage(m_state, turn, alongY ? PageAxis::Y : PageAxis::X))
        Fill();
    else
        Say("Numbers do not go any further.");
}

void ValueTableBase::TakeStep()
{
    if (SetStep(m_state, m_step->text().toStdString())) {
        MarkStep({});
        Fill();
        return;
    }
    const QString problem = "Invalid step sequence!";
    Say(problem);
    MarkStep(problem);
    m_step->setFocus();
    m_step->selectAll();
}

// Marks the step as wrong, or takes the mark off when there is no problem.
void ValueTableBase::MarkStep(const QString& problem)
{
    m_step->setStyleSheet(
        problem.isEmpty()
            ? QString()
            : QString("border: 1px solid %1; border-radius: 2px; padding: 2px;").arg(kWrongColor));
    m_step->setAccessibleDescription(problem);
}

// ---- the table elsewhere

void ValueTableBase::copyTable()
{
    const std::string text = TableText(m_rows, m_variable, '\t');
    QApplication::clipboard()->setText(QString::fromStdString(text));
}

void ValueTableBase::AskForCsv()
{
    QFileDialog dialog(this, "Save Value Table", {}, "Comma-separated values (*.csv)");
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("csv");
    dialog.selectFile("values.csv");
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        writeCsv(dialog.selectedFiles().constFirst());
}

bool ValueTableBase::writeCsv(const QString& path)
{
    QString why;
    const bool written =
        ReplaceFile(path, QByteArray::fromStdString(TableText(m_rows, m_variable, ',')), &why);
    if (!written)
        Say("Cannot write " + path + ": " + why);
    return written;
}

void ValueTableBase::Say(const QString& text)
{
    QMessageBox box(QMessageBox::NoIcon, windowTitle(), text, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

// ---- events

void ValueTableBase::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return QDialog::keyPressEvent(event);
    if (auto* key = qobject_cast<QPushButton*>(focusWidget()))
        key->click();
}

// A box without selected text leaves Ctrl+C to the window, which copies the whole table.
bool ValueTableBase::eventFilter(QObject* target, QEvent* event)
{
    const auto* box = qobject_cast<QLineEdit*>(target);
    if (event->type() == QEvent::ShortcutOverride && box != nullptr && !box->hasSelectedText() &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        event->ignore();
        return true;
    }
    return QDialog::eventFilter(target, event);
}

ValueTable::ValueTable(TableProvider provider, QWidget* parent)
    : ValueTableBase(Dependent::Y, std::move(provider), parent)
{
    setObjectName("ValueTable");
}

ValueTable3D::ValueTable3D(TableProvider provider, QWidget* parent)
    : ValueTableBase(Dependent::Z, std::move(provider), parent)
{
    setObjectName("ValueTable3D");
}

} // namespace kelvane
