#include "ui/matrix_dialog.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace kelvane {

namespace {

constexpr int kGap = 8;     // between cells
constexpr int kMargin = 12; // between a bracket and the cells
constexpr int kRow = 28;    // height of a cell
constexpr double kHook = 6; // the short ends of a bracket

// Draws a pair of square brackets at both ends of a rectangle.
void PaintBrackets(QPainter& painter, const QRectF& area)
{
    for (const auto& [edge, inward] :
         {std::pair(area.left(), kHook), std::pair(area.right(), -kHook)}) {
        painter.drawPolyline(QPolygonF{{edge + inward, area.top()},
                                       {edge, area.top()},
                                       {edge, area.bottom()},
                                       {edge + inward, area.bottom()}});
    }
}

// Cells between the brackets of a matrix.
class BracketedGrid : public QWidget {
public:
    explicit BracketedGrid(std::size_t order)
        : m_order(order)
        , m_grid(new QGridLayout(this))
    {
        m_grid->setContentsMargins(kMargin, kGap, kMargin, kGap);
        m_grid->setSpacing(kGap);
    }

    // As number k, down the columns.
    void Add(std::size_t k, QWidget* cell)
    {
        m_grid->addWidget(cell, static_cast<int>(k % m_order), static_cast<int>(k / m_order));
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
        PaintBrackets(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    }

private:
    std::size_t m_order;
    QGridLayout* m_grid;
};

// The head of the columns: "[  X        Y  ]", each letter in the middle of its column.
class ColumnHead : public QLabel {
public:
    explicit ColumnHead(std::size_t order)
        : QLabel(order == 2 ? "[  X        Y  ]" : "[  X        Y        Z  ]")
    {
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        QColor ink = palette().color(QPalette::WindowText);
        ink.setAlphaF(0.7F);
        painter.setPen(ink);
        const QStringList parts = text().split(' ', Qt::SkipEmptyParts);
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, parts.front());
        painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter, parts.back());
        const double columns = static_cast<double>(parts.size() - 2);
        const double step = (width() - 2 * kMargin + kGap) / columns;
        for (qsizetype i = 1; i + 1 < parts.size(); ++i) {
            const double left = kMargin - kGap / 2.0 + step * static_cast<double>(i - 1);
            painter.drawText(QRectF(left, 0, step, height()), Qt::AlignCenter, parts[i]);
        }
    }
};

// Below one another: a caption, the head of the columns, the grid.
void AddMatrix(QGridLayout& table, int column, const QString& caption, BracketedGrid* grid,
               std::size_t order)
{
    auto* label = new QLabel(caption);
    label->setAlignment(Qt::AlignCenter);
    table.addWidget(label, 0, column);
    table.addWidget(new ColumnHead(order), 1, column);
    table.addWidget(grid, 2, column);
}

// "row 1, column 2"
QString PlaceOf(std::size_t k, std::size_t order)
{
    return QString("row %1, column %2").arg(k % order + 1).arg(k / order + 1);
}

} // namespace

MatrixDialog::MatrixDialog(Matrix3& matrix, Dimensions dimensions, QWidget* parent)
    : SettingsDialog(dimensions == Dimensions::Two ? "Matrix 2D" : "Matrix 3D", "Matrix", parent)
    , m_matrix(matrix)
    , m_opened(matrix)
    , m_setup(matrix, dimensions)
{
    m_hint = new QLabel;
    Content().setSpacing(12);
    Content().addWidget(m_hint);
    auto* table = new QGridLayout;
    table->setHorizontalSpacing(16);
    table->setVerticalSpacing(4);
    AddTyped(*table);
    AddOperations(*table);
    AddCurrent(*table);
    Content().addLayout(table);
    ShowLabels();
    // Both sizes share one help page.
    auto* help = findChild<QPushButton*>("Command4");
    disconnect(help, &QPushButton::clicked, this, nullptr);
    connect(help, &QPushButton::clicked, this, [this] { Q_EMIT helpRequested("Matrix"); });
}

void MatrixDialog::AddTyped(QGridLayout& table)
{
    const std::size_t order = m_setup.Order();
    auto* grid = new BracketedGrid(order);
    for (std::size_t k = 0; k < m_setup.Count(); ++k) {
        auto* box = new QLineEdit;
        box->setObjectName(QString("Text1(%1)").arg(k));
        box->setAccessibleName("T, " + PlaceOf(k, order));
        box->setAlignment(Qt::AlignCenter);
        box->setFixedSize(72, kRow);
        box->installEventFilter(this);
        grid->Add(k, box);
        m_boxes.push_back(box);
    }
    // Matrices are written row by row.
    for (std::size_t i = 1; i < m_boxes.size(); ++i) {
        const auto box = [&](std::size_t at) { return m_boxes[at / order + at % order * order]; };
        setTabOrder(box(i - 1), box(i));
    }
    AddMatrix(table, 0, "T, your matrix", grid, order);
}

void MatrixDialog::AddOperations(QGridLayout& table)
{
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    column->addStretch();
    const auto add = [&](const char* name, const QString& caption, MatrixOperation operation) {
        auto* button = new QPushButton(caption);
        button->setObjectName(name);
        button->setAutoDefault(false);
        button->setMinimumWidth(96);
        column->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this, operation] { Apply(operation); });
    };
    add("Command5", "Multiply =>", MatrixOperation::Multiply);
    add("Command6", "Add =>", MatrixOperation::Add);
    column->addStretch();
    table.addLayout(column, 2, 1);
}

void MatrixDialog::AddCurrent(QGridLayout& table)
{
    const std::size_t order = m_setup.Order();
    auto* grid = new BracketedGrid(order);
    const int widest = fontMetrics().horizontalAdvance("-1.1754944e-38");
    for (std::size_t k = 0; k < m_setup.Count(); ++k) {
        auto* label = new QLabel;
        label->setObjectName(QString("Label4(%1)").arg(k));
        label->setAccessibleName("C, " + PlaceOf(k, order));
        label->setAlignment(Qt::AlignCenter);
        label->setFixedSize(widest, kRow);
        grid->Add(k, label);
        m_labels.push_back(label);
    }
    AddMatrix(table, 2, "C, the current matrix", grid, order);
}

// Up and Down go from row to row.
bool MatrixDialog::eventFilter(QObject* target, QEvent* event)
{
    const auto at = std::find(m_boxes.begin(), m_boxes.end(), target);
    if (event->type() != QEvent::KeyPress || at == m_boxes.end())
        return SettingsDialog::eventFilter(target, event);
    const std::size_t k = static_cast<std::size_t>(at - m_boxes.begin());
    const std::size_t row = k % m_setup.Order();
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Up && row > 0)
        m_boxes[k - 1]->setFocus();
    else if (key == Qt::Key_Down && row + 1 < m_setup.Order())
        m_boxes[k + 1]->setFocus();
    else
        return SettingsDialog::eventFilter(target, event);
    return true;
}

void MatrixDialog::ShowAccepted()
{
    m_setup.Restore();
    m_setup.Resume();
    ShowLabels();
}

void MatrixDialog::ShowDefaults()
{
    m_setup.Default();
    ShowLabels();
}

bool MatrixDialog::TakeOver()
{
    m_setup.Accept();
    return true;
}

QWidget* MatrixDialog::FirstField()
{
    return m_boxes[0];
}

void MatrixDialog::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        m_opened = m_matrix;
    SettingsDialog::showEvent(event);
}

void MatrixDialog::Apply(MatrixOperation operation)
{
    std::vector<std::string> typed;
    for (const QLineEdit* box : m_boxes)
        typed.push_back(box->text().toStdString());
    const auto fault = m_setup.Apply(operation, typed);
    ShowLabels();
    if (fault) {
        ShowProblem(*this, *m_boxes[*fault], QGuiApplication::applicationDisplayName(),
                    "Invalid Matrix!");
        return;
    }
    for (QLineEdit* box : m_boxes)
        box->clear();
    m_boxes[0]->setFocus();
}

void MatrixDialog::ShowLabels()
{
    for (std::size_t k = 0; k < m_labels.size(); ++k)
        m_labels[k]->setText(QString::fromStdString(m_setup.Label(k)));
    m_hint->setText(m_setup.ShowsMatrix()
                        ? "Multiply makes T \u00d7 C the current matrix, Add makes it T + C.\n"
                          "Both take effect at once; Cancel does not undo them."
                        : "C is the matrix that you last accepted; the drawing uses a later one.\n"
                          "Multiply and Add go on from C.");
}

} // namespace kelvane
