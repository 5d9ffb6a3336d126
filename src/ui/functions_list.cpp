#include "ui/functions_list.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace kelvane {

namespace {

struct Entry {
    const char* Name;
    const char* Meaning;
};

constexpr Entry kFunctions[] = {
    {"sin", "sine, radians"},  {"cos", "cosine, radians"},   {"tan", "tangent, radians"},
    {"asin", "arc sine"},      {"acos", "arc cosine"},       {"atan", "arc tangent"},
    {"abs", "absolute value"}, {"log", "natural logarithm"}, {"e", "2.718282"}};

constexpr Entry kCommands[] = {{"Draw", "Ctrl+ENTER"},    {"Clear", "Ctrl+C"},
                               {"Zoom In", "Ctrl+'+'"},   {"Zoom Out", "Ctrl+'-'"},
                               {"Axis Center", "Ctrl+X"}, {"Copy", "Ctrl+INS"},
                               {"Paste", "Shift+INS"}};

template <std::size_t N>
QTreeWidget* MakeTable(const Entry (&entries)[N], const QStringList& headings)
{
    auto* table = new QTreeWidget;
    table->setHeaderLabels(headings);
    table->setRootIsDecorated(false);
    table->setFrameShape(QFrame::NoFrame);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    for (const Entry& entry : entries)
        new QTreeWidgetItem(table, {entry.Name, entry.Meaning});
    table->resizeColumnToContents(0);
    table->setColumnWidth(0, table->columnWidth(0) + 24);
    const int row = table->sizeHintForRow(0);
    table->setMinimumHeight(static_cast<int>(N) * row + table->header()->sizeHint().height() + 8);
    return table;
}

} // namespace

FunctionsList::FunctionsList(QWidget* parent)
    : QDialog(parent)
{
    setObjectName("FunctionsList");
    setWindowTitle("Functions and Short Keys");
    auto* functions = MakeTable(kFunctions, {"Function", "Meaning"});
    functions->setAccessibleName("Functions");
    auto* commands = MakeTable(kCommands, {"Command", "Keys"});
    commands->setAccessibleName("Short keys");
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(12);
    layout->addWidget(functions);
    layout->addWidget(commands);
    layout->addWidget(buttons);
    resize(340, sizeHint().height());
}

} // namespace kelvane
