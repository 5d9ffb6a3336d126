#include "ui/color_setup_dialog.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/color_sample.h"
#include "ui/draw_preview.h"

namespace kelvane {

ColorSetupDialog::ColorSetupDialog(DrawSettings& settings, QWidget* parent)
    : SettingsDialog("Color Setup", "Color Setup", parent, Buttons(Ok | Cancel))
    , m_settings(settings)
    , m_white(new QRadioButton("White"))
    , m_custom(new QRadioButton("Custom"))
    , m_sample(new ColorSample("Sheet color"))
    , m_preview(new SheetPreview)
{
    m_white->setObjectName("Option1(0)");
    m_custom->setObjectName("Option2");
    m_sample->setObjectName("Sample(0)");
    auto* frame = new QGroupBox("Sheet Color");
    auto* grid = new QGridLayout(frame);
    grid->setContentsMargins(12, 12, 12, 12);
    grid->setVerticalSpacing(4);
    grid->addWidget(m_white, 0, 0);
    grid->addWidget(m_custom, 1, 0);
    grid->addWidget(m_sample, 1, 1);
    grid->setColumnStretch(2, 1);
    grid->setRowMinimumHeight(2, 8);
    grid->addWidget(m_preview, 3, 0, 1, 3);
    Content().addWidget(frame);
    connect(m_white, &QRadioButton::toggled, this, &ColorSetupDialog::ShowPreview);
    connect(m_sample, &ColorSample::colorChanged, this, &ColorSetupDialog::ShowPreview);
    // Who picks a colour wants to see it.
    connect(m_sample, &ColorSample::colorPicked, m_custom, [this] { m_custom->setChecked(true); });
    ColorSetupDialog::ShowAccepted();
}

void ColorSetupDialog::ApplyColor()
{
    m_settings.SheetColor = SheetColorOf(Ground(), m_sample->Color());
    Q_EMIT sheetColorChanged(m_settings.SheetColor);
}

void ColorSetupDialog::ShowAccepted()
{
    (m_settings.Ground == SheetGround::White ? m_white : m_custom)->setChecked(true);
    m_sample->SetColor(m_settings.CustomSheetColor);
    ShowPreview();
}

bool ColorSetupDialog::TakeOver()
{
    ApplyColor();
    m_settings.Ground = Ground();
    m_settings.CustomSheetColor = m_sample->Color();
    return true;
}

QWidget* ColorSetupDialog::FirstField()
{
    return m_white->isChecked() ? m_white : m_custom;
}

SheetGround ColorSetupDialog::Ground() const
{
    return m_white->isChecked() ? SheetGround::White : SheetGround::Custom;
}

void ColorSetupDialog::ShowPreview()
{
    m_preview->Show(SheetColorOf(Ground(), m_sample->Color()), m_settings.SolidColor);
}

} // namespace kelvane
