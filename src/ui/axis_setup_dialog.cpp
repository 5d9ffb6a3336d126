#include "ui/axis_setup_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "engine/number_text.h"
#include "ui/axis_preview.h"
#include "ui/number_spin.h"
#include "ui/value_text.h"

namespace kelvane {

namespace {

constexpr QSize kPreviewSize(288, 200);
constexpr int kSliderWidth = 220;
constexpr std::array kAxisNames{"X", "Y", "Z"};
constexpr std::array kAxisKeys{Qt::Key_X, Qt::Key_Y, Qt::Key_Z};

enum Tab { CenterTab, DivisionsTab, UnitTab, ThicknessTab };

QString KeyText(Qt::Key key)
{
    return QString("Alt + %1").arg(QChar(key));
}

QCheckBox* MakeTickBox(const QString& name, const QString& text, Qt::Key key)
{
    auto* box = new QCheckBox(text);
    box->setObjectName(name);
    box->setShortcut(QKeySequence(Qt::ALT | key));
    box->setToolTip(KeyText(key));
    return box;
}

// A page of the tab strip, with an explanation below its heading row.
struct Page {
    QWidget* Widget = nullptr;
    QVBoxLayout* Rows = nullptr;
    QGridLayout* Grid = nullptr;
};

Page MakePage(const QString& explanation)
{
    Page page{new QWidget, nullptr, new QGridLayout};
    page.Rows = new QVBoxLayout(page.Widget);
    page.Rows->setContentsMargins(12, 12, 12, 12);
    page.Rows->setSpacing(12);
    if (!explanation.isEmpty())
        page.Rows->addWidget(new QLabel(explanation));
    page.Grid->setHorizontalSpacing(8);
    page.Grid->setVerticalSpacing(12);
    page.Rows->addLayout(page.Grid);
    return page;
}

// Alt and the key lead to the field while it can be seen.
void AddKey(Qt::Key key, QWidget& field)
{
    auto* shortcut = new QShortcut(QKeySequence(Qt::ALT | key), field.parentWidget());
    shortcut->setContext(Qt::WindowShortcut);
    QObject::connect(shortcut, &QShortcut::activated, &field, [&field] {
        field.setFocus(Qt::ShortcutFocusReason);
        if (auto* spin = qobject_cast<NumberSpin*>(&field))
            spin->selectAll();
    });
    field.setToolTip(KeyText(key));
}

} // namespace

AxisSetupDialog::AxisSetupDialog(AxisSetup& accepted, QWidget* parent)
    : SettingsDialog("Axis Setup", "Axis Setup", parent)
    , m_accepted(accepted)
    , m_shown(accepted)
{
    m_tabs = new QTabWidget;
    m_tabs->setObjectName("TabStrip1");
    m_tabs->addTab(MakeCenterPage(), "Center");
    m_tabs->addTab(MakeDivisionsPage(), "Divisions");
    m_tabs->addTab(MakeUnitPage(), "Unit");
    m_tabs->addTab(MakeThicknessPage(), "Thickness");
    m_preview =
        new PreviewBox(kPreviewSize, "Preview", [this](QPainter& painter, const QRectF& box) {
            PaintSheet(painter, box, m_shown, m_area);
        });
    m_preview->setObjectName("Picture1");
    auto* columns = new QHBoxLayout;
    columns->setSpacing(12);
    columns->addWidget(m_tabs);
    auto* right = new QVBoxLayout; // in line with the pages
    right->setContentsMargins(0, m_tabs->tabBar()->sizeHint().height(), 0, 0);
    right->addWidget(m_preview);
    columns->addLayout(right);
    Content().addLayout(columns);
    ConnectControls();
    SetDrawArea(m_halfSpan, m_area);
}

QWidget* AxisSetupDialog::MakeCenterPage()
{
    constexpr double kMost = std::numeric_limits<float>::max();
    const Page page = MakePage({});
    auto* heading = new QLabel("The Center of the Axis is at:");
    heading->setObjectName("Label6");
    m_centerText = new QLabel;
    m_centerText->setObjectName("Label7");
    m_centerText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    page.Rows->insertWidget(0, heading);
    for (std::size_t i = 0; i < m_center.size(); ++i) {
        NumberSpin* spin = m_center[i] = new NumberSpin(-kMost, kMost, NumberSpin::Steps::Any);
        spin->setObjectName(QString("UpDown1(%1)").arg(i));
        spin->Edit().setObjectName(QString("Text1(%1)").arg(i));
        spin->setAccessibleName(QString("Center %1").arg(kAxisNames[i]));
        spin->setFixedWidth(160);
        auto* label = new QLabel(QString("%1  =").arg(kAxisNames[i]));
        label->setBuddy(spin);
        const int row = static_cast<int>(i);
        page.Grid->addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
        page.Grid->addWidget(spin, row, 1);
        AddKey(kAxisKeys[i], *spin);
    }
    page.Grid->setColumnStretch(2, 1);
    page.Rows->addWidget(m_centerText);
    m_square = MakeTickBox("Check1", "Square Work Sheet", Qt::Key_Q);
    page.Rows->addWidget(m_square);
    page.Rows->addStretch(1);
    return page.Widget;
}

QWidget* AxisSetupDialog::MakeDivisionsPage()
{
    const Page page = MakePage("How many units fit on half of each axis.");
    for (std::size_t i = 0; i < kAxisNames.size(); ++i)
        AddSlider(*page.Grid, DivisionX + static_cast<int>(i),
                  QString("%1 Axis Division =").arg(kAxisNames[i]), kAxisKeys[i]);
    page.Rows->addStretch(1);
    return page.Widget;
}

QWidget* AxisSetupDialog::MakeUnitPage()
{
    const Page page = MakePage("How long one unit is, in tenths of a pixel.");
    for (std::size_t i = 0; i < kAxisNames.size(); ++i)
        AddSlider(*page.Grid, UnitX + static_cast<int>(i),
                  QString("%1 Axis Unit =").arg(kAxisNames[i]), kAxisKeys[i]);
    page.Rows->addStretch(1);
    return page.Widget;
}

QWidget* AxisSetupDialog::MakeThicknessPage()
{
    const Page page = MakePage("How far the marks at the units stand out.");
    AddSlider(*page.Grid, Thickness, "Unit Thickness =", Qt::Key_T);
    m_hide = MakeTickBox("Check2", "Hide Axis", Qt::Key_I);
    page.Rows->addWidget(m_hide);
    page.Rows->addStretch(1);
    return page.Widget;
}

void AxisSetupDialog::AddSlider(QGridLayout& grid, int index, const QString& caption, Qt::Key key)
{
    const int row = grid.rowCount();
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setObjectName(QString("Slider1(%1)").arg(index));
    slider->setFixedWidth(kSliderWidth);
    slider->setAccessibleName(caption.chopped(2));
    auto* value = new QLabel;
    value->setObjectName(QString("Label3(%1)").arg(index));
    auto* label = new QLabel(caption);
    label->setBuddy(slider);
    grid.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(value, row, 1);
    grid.addWidget(slider, row, 2);
    const QFontMetrics metrics = value->fontMetrics();
    grid.setColumnMinimumWidth(0, metrics.horizontalAdvance("X Axis Division ="));
    grid.setColumnMinimumWidth(1, metrics.horizontalAdvance("40000.000"));
    AddKey(key, *slider);
    m_sliders[static_cast<std::size_t>(index)] = slider;
    m_values[static_cast<std::size_t>(index)] = value;
}

void AxisSetupDialog::ConnectControls()
{
    for (std::size_t i = 0; i < m_center.size(); ++i) {
        Slider(DivisionX + i).setRange(1, kMaxDivisions);
        connect(m_sliders[DivisionX + i], &QSlider::valueChanged, this,
                [this, i](int divisions) { MoveDivision(i, divisions); });
        connect(m_sliders[UnitX + i], &QSlider::valueChanged, this,
                [this, i](int unit) { MoveUnit(i, unit); });
        connect(&m_center[i]->Edit(), &QLineEdit::textChanged, this, &AxisSetupDialog::ShowPreview);
    }
    Slider(Thickness).setRange(1, kMaxUnitThickness);
    Slider(Thickness).setPageStep(5);
    connect(m_sliders[Thickness], &QSlider::valueChanged, this, [this](int thickness) {
        ShowSlider(Thickness, thickness);
        ShowPreview();
    });
    connect(m_square, &QCheckBox::toggled, this, &AxisSetupDialog::ShowPreview);
    connect(m_hide, &QCheckBox::toggled, this, &AxisSetupDialog::ShowPreview);
}

void AxisSetupDialog::SetDrawArea(float axisHalfSpan, const QSize& area)
{
    m_halfSpan = axisHalfSpan;
    m_area = area;
    const auto [low, high] = UnitsFor(m_halfSpan);
    for (std::size_t i = 0; i < m_center.size(); ++i) {
        const QSignalBlocker quiet(m_sliders[UnitX + i]);
        Slider(UnitX + i).setRange(low, high);
        Slider(UnitX + i).setPageStep(std::max((high - low) / 20, 1));
        MoveDivision(i, Slider(DivisionX + i).value());
    }
    if (!isVisible())
        AxisSetupDialog::ShowAccepted();
}

void AxisSetupDialog::Command1_Click()
{
    accept();
}

// Sets a slider and its label without moving what is coupled to it.
void AxisSetupDialog::ShowSlider(int index, int value)
{
    const auto at = static_cast<std::size_t>(index);
    const QSignalBlocker quiet(m_sliders[at]);
    m_sliders[at]->setValue(value);
    m_values[at]->setText(QString::number(value));
}

// Shows a unit in full, its slider at the nearest whole one.
void AxisSetupDialog::ShowUnit(std::size_t axis, float unit)
{
    const int index = UnitX + static_cast<int>(axis);
    const auto [low, high] = UnitsFor(m_halfSpan);
    ShowSlider(index, static_cast<int>(std::clamp(std::round(unit), static_cast<float>(low),
                                                  static_cast<float>(high))));
    m_values[UnitX + axis]->setText(QString::fromStdString(ShortestText(unit)));
}

void AxisSetupDialog::MoveDivision(std::size_t axis, int divisions)
{
    ShowSlider(DivisionX + static_cast<int>(axis), divisions);
    ShowUnit(axis, UnitFor(m_halfSpan, divisions));
    ShowPreview();
}

void AxisSetupDialog::MoveUnit(std::size_t axis, int unit)
{
    ShowSlider(UnitX + static_cast<int>(axis), unit);
    ShowSlider(DivisionX + static_cast<int>(axis),
               DivisionsFor(m_halfSpan, static_cast<float>(unit)));
    ShowPreview();
}

void AxisSetupDialog::ShowAccepted()
{
    for (std::size_t i = 0; i < m_center.size(); ++i) {
        m_center[i]->SetValue(m_accepted.Center[i]);
        ShowUnit(i, m_accepted.Units[i]);
        ShowSlider(DivisionX + static_cast<int>(i), m_accepted.Divisions[i]);
    }
    ShowSlider(Thickness, m_accepted.UnitThickness);
    m_square->setChecked(m_accepted.SquareWorkSheet);
    m_hide->setChecked(m_accepted.HideAxis);
    ShowPreview();
}

void AxisSetupDialog::ShowDefaults()
{
    const AxisSetup standard = DefaultAxisSetup(m_halfSpan);
    m_square->setChecked(standard.SquareWorkSheet);
    m_hide->setChecked(standard.HideAxis);
    for (std::size_t i = 0; i < m_center.size(); ++i) {
        MoveDivision(i, standard.Divisions[i]); // also where only the unit differs
        m_center[i]->SetValue(standard.Center[i]);
    }
    Slider(Thickness).setValue(standard.UnitThickness);
}

bool AxisSetupDialog::TakeOver()
{
    const auto problem = AcceptDraft(m_accepted, Draft());
    return !problem || Refuse(*problem);
}

bool AxisSetupDialog::Refuse(const AxisProblem& problem)
{
    const QString text = QString::fromStdString(DescribeProblem(problem));
    if (problem.Field == AxisField::Center) {
        m_tabs->setCurrentIndex(CenterTab);
        ShowProblem(*this, m_center[problem.Axis]->Edit(), windowTitle(), text);
        m_center[problem.Axis]->Mark();
        return false;
    }
    m_tabs->setCurrentIndex(UnitTab);
    QMessageBox box(QMessageBox::NoIcon, windowTitle(), text, QMessageBox::Ok, this);
    box.exec();
    Slider(UnitX + problem.Axis).setFocus();
    return false;
}

QWidget* AxisSetupDialog::FirstField()
{
    switch (m_tabs->currentIndex()) {
    case DivisionsTab:
        return m_sliders[DivisionX];
    case UnitTab:
        return m_sliders[UnitX];
    case ThicknessTab:
        return m_sliders[Thickness];
    default:
        return &m_center[0]->Edit();
    }
}

AxisDraft AxisSetupDialog::Draft() const
{
    AxisDraft draft;
    for (std::size_t i = 0; i < m_center.size(); ++i) {
        draft.Center[i] = m_center[i]->Edit().text().toStdString();
        draft.Units[i] = m_values[UnitX + i]->text().toStdString();
        draft.Divisions[i] = Slider(DivisionX + i).value();
    }
    draft.UnitThickness = Slider(Thickness).value();
    draft.SquareWorkSheet = m_square->isChecked();
    draft.HideAxis = m_hide->isChecked();
    return draft;
}

// Where a centre is no number yet, the picture keeps the last one that was.
void AxisSetupDialog::ShowPreview()
{
    AxisDraft draft = Draft();
    QStringList center;
    for (std::size_t i = 0; i < draft.Center.size(); ++i) {
        const TypedSingle typed = ReadSingle(draft.Center[i]);
        center += typed.Fault ? QString("?") : ValueText(typed.Value);
        if (typed.Fault)
            draft.Center[i] = ShortestText(m_shown.Center[i]);
    }
    m_centerText->setText(QString("Center = (%1)").arg(center.join(',')));
    AcceptDraft(m_shown, draft);
    m_preview->Show(m_shown.HideAxis ? QString("The axes are hidden.") : m_centerText->text());
}

} // namespace kelvane
