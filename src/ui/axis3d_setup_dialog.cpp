#include "ui/axis3d_setup_dialog.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "ui/axis_preview.h"
#include "ui/number_spin.h"

namespace kelvane {

namespace {

constexpr QSize kPreviewSize(224, 224);

QRadioButton* MakeChoice(const QString& name, const QString& text, const QString& toolTip, int key)
{
    auto* choice = new QRadioButton(text);
    choice->setObjectName(name);
    choice->setToolTip(toolTip);
    choice->setShortcut(QKeySequence(key));
    return choice;
}

// What stands below a choice, in line with its text.
constexpr int kIndent = 24;

QLabel* MakeNote(const QString& text)
{
    auto* note = new QLabel(text);
    note->setContentsMargins(kIndent, 0, 0, 0);
    return note;
}

} // namespace

Axis3DSetupDialog::Axis3DSetupDialog(AxisModel& accepted, const AxisSetup& setup, QWidget* parent)
    : SettingsDialog("Axis3D Setup", "Axis3D Setup", parent, Buttons(Ok | Default))
    , m_accepted(accepted)
    , m_setup(setup)
{
    auto* standard = findChild<QPushButton*>("Command3");
    standard->setObjectName("Command2"); // "Default"
    m_preview =
        new PreviewBox(kPreviewSize, "Preview", [this](QPainter& painter, const QRectF& box) {
            const CrossScale scale{m_setup.UnitThickness / 100.0, m_setup.Units[0] / 10.0,
                                   m_setup.Units[1] / 10.0};
            PaintCross(painter, box, {m_realWorld->isChecked(), 0}, m_angle, scale);
        });
    m_preview->setObjectName("DrawBox");
    auto* columns = new QHBoxLayout;
    columns->setSpacing(12);
    columns->addWidget(MakeFrame());
    columns->addWidget(m_preview);
    Content().addLayout(columns);
    connect(m_realWorld, &QRadioButton::toggled, this, &Axis3DSetupDialog::ChooseModel);
    connect(&m_spin->Edit(), &QLineEdit::textChanged, this, &Axis3DSetupDialog::ShowPreview);
    auto* key = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_A), this);
    connect(key, &QShortcut::activated, this, [this] {
        m_spin->setFocus();
        m_spin->selectAll();
    });
    Axis3DSetupDialog::ShowAccepted();
    setTabOrder(standard, findChild<QPushButton*>("Command1")); // as they stand
}

QWidget* Axis3DSetupDialog::MakeFrame()
{
    m_realWorld = MakeChoice("Option1", "Real World Axis", "Alt + R", Qt::ALT | Qt::Key_R);
    m_simple = MakeChoice("Option2", "Simple Axis", "Alt + S", Qt::ALT | Qt::Key_S);
    auto* frame = new QGroupBox("3D Axis Model");
    frame->setObjectName("Frame1");
    auto* rows = new QVBoxLayout(frame);
    rows->setContentsMargins(12, 12, 12, 12);
    rows->setSpacing(8);
    rows->addWidget(m_realWorld);
    rows->addWidget(MakeNote("The axes recede at your angle."));
    m_angleRow = MakeAngleRow();
    rows->addWidget(m_angleRow);
    rows->addWidget(m_simple);
    rows->addWidget(MakeNote("One axis recedes, at 45 degrees."));
    rows->addStretch(1);
    return frame;
}

QWidget* Axis3DSetupDialog::MakeAngleRow()
{
    m_spin = new NumberSpin(kMinAxisAngle, kMaxAxisAngle, NumberSpin::Steps::Whole);
    m_spin->setObjectName("UpDown1");
    m_spin->Edit().setObjectName("Text1");
    m_spin->setAccessibleName("Angle in degrees");
    m_spin->setToolTip("Alt + A");
    m_spin->setFixedWidth(80);
    auto* label = new QLabel("Angle:");
    label->setObjectName("Label2");
    label->setBuddy(m_spin);
    auto* holder = new QWidget;
    auto* angle = new QHBoxLayout(holder);
    angle->setContentsMargins(kIndent, 0, 0, 16);
    angle->setSpacing(8);
    angle->addWidget(label);
    angle->addWidget(m_spin);
    angle->addWidget(new QLabel("degrees"));
    angle->addStretch(1);
    return holder;
}

void Axis3DSetupDialog::ShowAccepted()
{
    const auto half = HalfAngleOf(std::to_string(m_acceptedAngle));
    if (half != m_accepted.Axis3DHalfAngle) // set by others
        m_acceptedAngle = 2 * m_accepted.Axis3DHalfAngle;
    (m_accepted.RealWorldAxis ? m_realWorld : m_simple)->setChecked(true);
    m_spin->SetValue(static_cast<float>(m_acceptedAngle));
    ChooseModel();
}

void Axis3DSetupDialog::ShowDefaults()
{
    m_realWorld->setChecked(true);
    m_spin->SetValue(kUsualAxisAngle);
}

bool Axis3DSetupDialog::TakeOver()
{
    const std::string text = m_spin->Edit().text().toStdString();
    const auto angle = AngleOf(text);
    const auto half = HalfAngleOf(text);
    if (!angle || !half) {
        ShowProblem(*this, m_spin->Edit(), windowTitle(),
                    QString("Angle needs a number from %1 to %2.")
                        .arg(QString::number(kMinAxisAngle), QString::number(kMaxAxisAngle)));
        m_spin->Mark();
        return false;
    }
    m_acceptedAngle = *angle;
    m_accepted.Axis3DHalfAngle = *half;
    m_accepted.RealWorldAxis = m_realWorld->isChecked();
    return true;
}

QWidget* Axis3DSetupDialog::FirstField()
{
    if (m_realWorld->isChecked())
        return &m_spin->Edit();
    return m_simple;
}

// A bad angle would be out of reach in the disabled box, so the last good one takes its place.
void Axis3DSetupDialog::ChooseModel()
{
    const bool realWorld = m_realWorld->isChecked();
    if (!realWorld && !AngleOf(m_spin->Edit().text().toStdString()))
        m_spin->SetValue(static_cast<float>(m_angle));
    m_angleRow->setEnabled(realWorld);
    ShowPreview();
}

void Axis3DSetupDialog::ShowPreview()
{
    if (const auto angle = AngleOf(m_spin->Edit().text().toStdString()))
        m_angle = *angle;
    m_preview->Show(m_realWorld->isChecked()
                        ? QString("X lies at %1 degrees, Y at half of it.").arg(m_angle)
                        : QString("X lies at 45 degrees, Y is level."));
}

} // namespace kelvane
