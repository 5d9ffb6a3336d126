#include "ui/draw_setup_dialog.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <initializer_list>

#include "ui/control_binding.h"
#include "ui/number_spin.h"

namespace kelvane {

namespace {

constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kPresetWidth = 96;

constexpr int kQualityTab = 0;

QString Text(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Fields of a draft.
template <class T>
auto Of(T DrawSettings::*field)
{
    return [field](auto& draft) -> auto&
    {
        return draft.Rest.*field;
    };
}
template <class T>
auto In3D(T Draw3DSettings::*field)
{
    return [field](auto& draft) -> auto&
    {
        return draft.Rest.In3D.*field;
    };
}
template <class T>
auto Of(T DrawDraft::*field)
{
    return [field](auto& draft) -> auto&
    {
        return draft.*field;
    };
}

// The list of draw widths starts with 1.
class WidthList : public QComboBox {};
void Put(WidthList& list, int width)
{
    list.setCurrentIndex(std::min(width, kListedDrawWidths) - 1);
}
void Take(const WidthList& list, int& width)
{
    width = list.currentIndex() + 1;
}

// ---- parts of groups

QVBoxLayout* Group(QWidget* page)
{
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kMargin);
    return layout;
}

struct Option {
    QString Name;
    QString Caption;
};

// Option buttons of which one is chosen, their ids 0, 1, ...
QButtonGroup* Options(QWidget* parent, std::initializer_list<Option> options)
{
    auto* group = new QButtonGroup(parent);
    for (const Option& option : options) {
        auto* button = new QRadioButton(option.Caption, parent);
        button->setObjectName(option.Name);
        group->addButton(button, static_cast<int>(group->buttons().size()));
    }
    return group;
}

QHBoxLayout* Row(std::initializer_list<QWidget*> widgets)
{
    auto* row = new QHBoxLayout;
    row->setSpacing(kGap);
    for (QWidget* widget : widgets)
        row->addWidget(widget);
    row->addStretch();
    return row;
}

QHBoxLayout* Row(const QButtonGroup& options)
{
    auto* row = Row({});
    row->setSpacing(2 * kGap);
    for (QAbstractButton* button : options.buttons())
        row->insertWidget(row->count() - 1, button);
    return row;
}

QGroupBox* Frame(const QString& caption, QLayout* content)
{
    auto* frame = new QGroupBox(caption);
    content->setContentsMargins(kMargin, kGap, kMargin, kGap);
    frame->setLayout(content);
    return frame;
}

QLayout* ResolutionRow(NumberSpin* box)
{
    auto* label = new QLabel("Resolution:");
    label->setBuddy(box);
    box->setMinimumWidth(104);
    return Row({label, box, new QLabel("pixel/unit")});
}

QPushButton* PresetButton(const QString& name, std::string_view caption, const QString& toolTip)
{
    auto* button = new QPushButton(Text(caption));
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setMinimumWidth(kPresetWidth);
    button->setToolTip(toolTip);
    return button;
}

// For option buttons and, beside them, samples. The same for every group, so that nothing moves.
QGridLayout* ColorGrid()
{
    constexpr int kRowHeight = 30;
    constexpr int kCaptionWidth = 80;
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kMargin);
    grid->setVerticalSpacing(4);
    grid->setColumnMinimumWidth(0, kCaptionWidth);
    grid->setColumnStretch(2, 1);
    for (int row = 0; row < 3; ++row)
        grid->setRowMinimumHeight(row, kRowHeight);
    return grid;
}

template <class Widget>
Widget* Named(Widget* widget, const QString& accessibleName)
{
    widget->setAccessibleName(accessibleName);
    return widget;
}

} // namespace

// ---- building

DrawSetupDialog::DrawSetupDialog(DrawSettings& settings, const DrawShared& shared, QWidget* parent)
    : SettingsDialog("Draw Setup", "Draw Setup", parent)
    , m_settings(settings)
    , m_shared(shared)
    , m_defaults(DraftOf(settings))
{
    auto* sides = new QHBoxLayout;
    sides->setSpacing(2 * kGap);
    sides->addLayout(BuildLeftSide(), 1);
    sides->addLayout(BuildRightSide());
    Content().addLayout(sides);
    connect(m_show3D, &QRadioButton::toggled, this, &DrawSetupDialog::FixTab);
    connect(m_tabs, &QTabWidget::currentChanged, this, &DrawSetupDialog::FixTab);
    DrawSetupDialog::ShowAccepted();
}

// Binds a control to its field of a draft, in either direction.
template <class Control, class Field>
void DrawSetupDialog::Bind(Control* control, const QString& name, Field field)
{
    control->setObjectName(name);
    m_bindings.push_back({[control, field](const DrawDraft& draft) { Put(*control, field(draft)); },
                          [control, field](DrawDraft& draft) { Take(*control, field(draft)); }});
    connect(control, Changed(control), this, &DrawSetupDialog::OnChange);
}

QLayout* DrawSetupDialog::BuildLeftSide()
{
    auto* column = new QVBoxLayout;
    column->setSpacing(0);
    auto* dimensions = Options(this, {{"Option1", "2D"}, {"Option2", "3D"}});
    m_show2D = qobject_cast<QRadioButton*>(dimensions->button(0));
    m_show3D = qobject_cast<QRadioButton*>(dimensions->button(1));
    column->addLayout(Row(*dimensions));
    column->addSpacing(kGap);
    m_tabs = new QTabWidget;
    Named(m_tabs->tabBar(), "Settings shown")->setObjectName("TabStrip1");
    AddTab("Quality", BuildQuality2D(), BuildQuality3D());
    AddTab("Technique", BuildTechnique2D(), BuildTechnique3D());
    AddTab("Color", BuildColor2D(), BuildColor3D());
    column->addWidget(m_tabs, 1);
    return column;
}

void DrawSetupDialog::AddTab(const QString& caption, QWidget* group2D, QWidget* group3D)
{
    auto* groups = new QStackedWidget;
    groups->addWidget(group2D);
    groups->addWidget(group3D);
    m_groups.push_back(groups);
    m_tabs->addTab(groups, caption);
}

QLayout* DrawSetupDialog::BuildRightSide()
{
    auto* column = new QVBoxLayout;
    column->setSpacing(kGap);
    auto* width = new WidthList;
    for (int i = 1; i <= kListedDrawWidths; ++i)
        width->addItem(QString::number(i));
    auto* label = new QLabel("Draw Width:");
    label->setBuddy(width);
    auto* redraw = new QCheckBox("Auto Redraw");
    redraw->setToolTip("Ticked: OK leaves the drawing as it is");
    m_preview = new DrawPreview;
    column->addLayout(Row({label, width}));
    column->addWidget(m_preview);
    column->addWidget(redraw);
    column->addStretch();
    Bind(width, "Combo1", Of(&DrawSettings::DrawWidth));
    Bind(redraw, "Check4", Of(&DrawSettings::AutoRedraw));
    return column;
}

QWidget* DrawSetupDialog::BuildQuality2D()
{
    auto* page = new QWidget;
    auto* layout = Group(page);
    m_resolution2D = new NumberSpin(1, kHighResolution2D, NumberSpin::Steps::Whole,
                                    "2D resolution in pixel/unit");
    auto* presets = Row({});
    for (const auto& [name, preset] :
         {std::pair("Command5", kPresets2D[0]), std::pair("Command6", kPresets2D[1]),
          std::pair("Command7", kPresets2D[2])}) {
        auto* button = PresetButton(name, preset.Name, Text(preset.Resolution) + " pixel/unit");
        presets->insertWidget(presets->count() - 1, button);
        connect(button, &QPushButton::clicked, this, [this, preset = preset] {
            DrawDraft draft = Read();
            ApplyPreset(draft, preset);
            Show(draft);
            m_resolution2D->Edit().setFocus();
            m_resolution2D->Edit().selectAll();
        });
    }
    layout->addLayout(ResolutionRow(m_resolution2D));
    layout->addWidget(Frame("Predefined Resolutions", presets));
    layout->addStretch();
    m_resolution2D->setObjectName("UpDown1");
    Bind(&m_resolution2D->Edit(), "Text1(0)", Of(&DrawDraft::Resolution2D));
    return page;
}

QWidget* DrawSetupDialog::BuildQuality3D()
{
    auto* page = new QWidget;
    auto* layout = Group(page);
    m_resolution3D = new NumberSpin(1, kHighResolution3D, NumberSpin::Steps::Whole,
                                    "3D resolution in pixel/unit");
    auto* presets = Row({});
    for (const auto& [name, preset] :
         {std::pair("Command10", kPresets3D[0]), std::pair("Command9", kPresets3D[1]),
          std::pair("Command8", kPresets3D[2])}) {
        const QString toolTip = QString("%1 pixel/unit, draw width %2, %3")
                                    .arg(Text(preset.Resolution))
                                    .arg(preset.DrawWidth)
                                    .arg(preset.Fill ? "filled" : "not filled");
        auto* button = PresetButton(name, preset.Name, toolTip);
        presets->insertWidget(presets->count() - 1, button);
        connect(button, &QPushButton::clicked, this, [this, preset = preset] {
            DrawDraft draft = Read();
            ApplyPreset(draft, preset);
            Show(draft);
        });
    }
    layout->addLayout(ResolutionRow(m_resolution3D));
    layout->addWidget(Frame("Predefined Resolutions", presets));
    layout->addStretch();
    m_resolution3D->setObjectName("UpDown2");
    Bind(&m_resolution3D->Edit(), "Text1(7)", Of(&DrawDraft::Resolution3D));
    return page;
}

QWidget* DrawSetupDialog::BuildTechnique2D()
{
    auto* page = new QWidget;
    auto* layout = Group(page);
    auto* style = Options(page, {{"Option3(0)", "Pixel"}, {"Option3(1)", "Line"}});
    layout->addWidget(Frame("Samples", Row(*style)));
    layout->addStretch();
    Bind(style, "Option3(2D)", Of(&DrawSettings::Style));
    return page;
}

QWidget* DrawSetupDialog::BuildTechnique3D()
{
    auto* page = new QWidget;
    auto* layout = Group(page);
    auto* style = Options(page, {{"Option3(2)", "Pixel"}, {"Option3(3)", "Line"}});
    m_vertical = new QCheckBox("Vertical");
    m_horizontal = new QCheckBox("Horizontal");
    auto* fill = new QCheckBox("Fill");
    m_technique = Named(new QComboBox, "Technique of filling");
    m_technique->addItems({"Wire Frame", "Solid", "Super Solid"});
    auto* samples = Row(*style);
    samples->insertWidget(2, m_vertical);
    samples->insertWidget(3, m_horizontal);
    layout->addWidget(Frame("Samples", samples));
    layout->addWidget(Frame("Surface", Row({fill, m_technique})));
    layout->addStretch();
    Bind(style, "Option3(3D)", In3D(&Draw3DSettings::Style));
    Bind(m_vertical, "Check3(0)", In3D(&Draw3DSettings::VerticalLines));
    Bind(m_horizontal, "Check3(1)", In3D(&Draw3DSettings::HorizontalLines));
    Bind(fill, "Check2", In3D(&Draw3DSettings::Fill));
    Bind(m_technique, "Combo2", Of(&DrawDraft::Technique));
    connect(style, &QButtonGroup::idToggled, this, &DrawSetupDialog::OnStyle3D);
    connect(fill, &QCheckBox::toggled, this, &DrawSetupDialog::OnFill);
    return page;
}

QWidget* DrawSetupDialog::BuildColor2D()
{
    auto* page = new QWidget;
    auto* layout = Group(page);
    auto* coloring = Options(
        page, {{"Option5(0)", "Solid"}, {"Option5(1)", "Gradual"}, {"Option5(2)", "Random"}});
    auto* axis = Options(page, {{"Option4(0)", "X Axis"}, {"Option4(1)", "Y Axis"}});
    auto* solid = new ColorSample("2D solid color");
    auto* from = new ColorSample("2D gradient start");
    auto* to = new ColorSample("2D gradient end");
    m_gradient2D = new GradientBar;
    auto* grid = ColorGrid();
    for (int i = 0; i < 3; ++i)
        grid->addWidget(coloring->button(i), i, 0);
    grid->addWidget(solid, 0, 1, Qt::AlignLeft);
    grid->addLayout(Row({from, m_gradient2D, to}), 1, 1);
    layout->addLayout(grid);
    layout->addWidget(Frame("Gradual Change Along:", Row(*axis)));
    layout->addStretch();
    Bind(coloring, "Option5(2D)", Of(&DrawSettings::Coloring));
    Bind(axis, "Option4(2D)", Of(&DrawSettings::GradientAlong));
    Bind(solid, "Sample(0)", Of(&DrawSettings::SolidColor));
    Bind(from, "Sample(1)", Of(&DrawSettings::GradientFrom));
    Bind(to, "Sample(2)", Of(&DrawSettings::GradientTo));
    return page;
}

QWidget* DrawSetupDialog::BuildColor3D()
{
    auto* page = new QWidget;
    auto* layout = Group(page);
    auto* coloring = Options(page, {{"Option5(3)", "Solid"}, {"Option5(4)", "Gradual"}});
    auto* axis = Options(
        page, {{"Option4(2)", "X Axis"}, {"Option4(3)", "Y Axis"}, {"Option4(4)", "Z Axis"}});
    auto* solid = new ColorSample("3D solid color");
    auto* from = new ColorSample("3D gradient start");
    auto* to = new ColorSample("3D gradient end");
    m_gradient3D = new GradientBar;
    m_scheme = Named(new QComboBox, "Color scheme of the 3D gradient");
    m_scheme->setObjectName("ColorCombo");
    m_scheme->setPlaceholderText("Own colors");
    for (const ColorScheme& scheme : kColorSchemes)
        m_scheme->addItem(Text(scheme.Name));
    auto* grid = ColorGrid();
    grid->addWidget(coloring->button(0), 0, 0);
    grid->addWidget(coloring->button(1), 1, 0);
    grid->addWidget(solid, 0, 1, Qt::AlignLeft);
    grid->addLayout(Row({from, m_gradient3D, to}), 1, 1);
    auto* schemes = Row({m_scheme});
    schemes->setContentsMargins(ColorSample::kRoom, 0, 0, 0); // below the samples' left edge
    grid->addLayout(schemes, 2, 1);
    layout->addLayout(grid);
    layout->addWidget(Frame("Gradual Change Along:", Row(*axis)));
    layout->addStretch();
    Bind(coloring, "Option5(3D)", In3D(&Draw3DSettings::Coloring));
    Bind(axis, "Option4(3D)", In3D(&Draw3DSettings::GradientAlong));
    Bind(solid, "Sample(5)", In3D(&Draw3DSettings::SolidColor));
    Bind(from, "Sample(4)", In3D(&Draw3DSettings::GradientFrom));
    Bind(to, "Sample(3)", In3D(&Draw3DSettings::GradientTo));
    connect(m_scheme, &QComboBox::currentIndexChanged, this, &DrawSetupDialog::OnScheme);
    return page;
}

// ---- controls and draft

DrawDraft DrawSetupDialog::Read() const
{
    DrawDraft draft = DraftOf(m_settings);
    for (const Binding& binding : m_bindings)
        binding.Read(draft);
    return draft;
}

void DrawSetupDialog::Show(const DrawDraft& draft)
{
    const QScopedValueRollback showing(m_showing, true);
    for (const Binding& binding : m_bindings)
        binding.Show(draft);
    ShowDependent(draft);
}

void DrawSetupDialog::ShowDependent(const DrawDraft& draft)
{
    const QScopedValueRollback showing(m_showing, true);
    DrawSettings settings = draft.Rest;
    settings.In3D.SurfaceQuality = QualityOf(draft.Technique);
    m_vertical->setEnabled(MayChooseLines(draft));
    m_horizontal->setEnabled(MayChooseLines(draft));
    m_technique->setEnabled(MayChooseTechnique(draft));
    m_scheme->setCurrentIndex(SchemeOf(settings.In3D.GradientFrom, settings.In3D.GradientTo));
    m_gradient2D->SetColors(settings.GradientFrom, settings.GradientTo);
    m_gradient3D->SetColors(settings.In3D.GradientFrom, settings.In3D.GradientTo);
    m_preview->Show(settings, Kind());
}

void DrawSetupDialog::OnChange()
{
    if (!m_showing)
        ShowDependent(Read());
}

void DrawSetupDialog::OnStyle3D(int style, bool chosen)
{
    if (m_showing || !chosen)
        return;
    DrawDraft draft = Read();
    ChooseStyle3D(draft, static_cast<PointStyle>(style));
    Show(draft);
}

void DrawSetupDialog::OnFill(bool ticked)
{
    if (m_showing || !ticked || !FillWantsAdvice(Read()))
        return;
    QMessageBox box(QMessageBox::NoIcon, Text(kFillAdviceTitle), Text(kFillAdvice), QMessageBox::Ok,
                    this);
    box.exec();
}

void DrawSetupDialog::OnScheme()
{
    if (m_showing)
        return;
    DrawDraft draft = Read();
    ApplyScheme(draft, m_scheme->currentText().toStdString());
    Show(draft);
}

SheetKind DrawSetupDialog::Kind() const
{
    return m_show3D->isChecked() ? SheetKind::Sheet3D : SheetKind::Sheet2D;
}

void DrawSetupDialog::FixTab()
{
    for (QStackedWidget* groups : m_groups) // of the tab that is shown, and of the others
        groups->setCurrentIndex(Kind() == SheetKind::Sheet3D ? 1 : 0);
    ShowDependent(Read());
}

// ---- OK, Cancel, Default

void DrawSetupDialog::ShowAccepted()
{
    (m_acceptedKind == SheetKind::Sheet3D ? m_show3D : m_show2D)->setChecked(true);
    Show(DraftOf(m_settings));
    FixTab();
}

void DrawSetupDialog::ShowDefaults()
{
    Show(m_defaults);
}

bool DrawSetupDialog::TakeOver()
{
    const DrawDraft draft = Read();
    DrawSetupResult result = AcceptDraft(m_settings, m_shared, draft, HighResolution::AskFirst);
    if (result.End == DrawSetupEnd::AskFirst) {
        QMessageBox box(QMessageBox::NoIcon, windowTitle(), Text(kHighResolutionQuestion),
                        QMessageBox::Yes | QMessageBox::No, this);
        box.setDefaultButton(QMessageBox::No);
        if (box.exec() != QMessageBox::Yes)
            return false;
        result = AcceptDraft(m_settings, m_shared, draft, HighResolution::Agreed);
    }
    if (result.End == DrawSetupEnd::Invalid2D)
        return Refuse(SheetKind::Sheet2D);
    if (result.End == DrawSetupEnd::Invalid3D)
        return Refuse(SheetKind::Sheet3D);
    m_acceptedKind = Kind();
    m_redrawDue = result.RedrawDue;
    return true;
}

bool DrawSetupDialog::Refuse(SheetKind kind)
{
    const bool is3D = kind == SheetKind::Sheet3D;
    (is3D ? m_show3D : m_show2D)->setChecked(true);
    m_tabs->setCurrentIndex(kQualityTab);
    NumberSpin& box = is3D ? *m_resolution3D : *m_resolution2D;
    ShowProblem(*this, box.Edit(), windowTitle(), Text(kInvalidResolution));
    box.Mark();
    return false;
}

QWidget* DrawSetupDialog::FirstField()
{
    if (m_tabs->currentIndex() != kQualityTab)
        return m_tabs->tabBar();
    return &(Kind() == SheetKind::Sheet3D ? m_resolution3D : m_resolution2D)->Edit();
}

} // namespace kelvane
