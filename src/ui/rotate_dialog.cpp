#include "ui/rotate_dialog.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/angle_dial.h"

namespace kelvane {

RotateDialog::RotateDialog(Matrix3& matrix, QWidget* parent)
    : SettingsDialog("Rotate", "Rotate", parent)
    , m_matrix(matrix)
{
    findChild<QLabel*>()->setObjectName("Label1");
    m_hint = new QLabel;
    Content().setSpacing(12);
    Content().addWidget(m_hint);
    auto* row = new QHBoxLayout;
    row->setSpacing(24);
    AddAngle(*row, 0, "Rotate Around Z");
    AddAngle(*row, 1, "Rotate Around Y");
    Content().addLayout(row);
    m_complaint.setSingleShot(true);
    m_complaint.setInterval(0);
    connect(&m_complaint, &QTimer::timeout, this, &RotateDialog::Complain);
}

void RotateDialog::AddAngle(QHBoxLayout& row, std::size_t i, const QString& caption)
{
    Angle& angle = m_angles[i];
    angle.Panel = new QWidget;
    angle.Box = new QLineEdit;
    angle.Box->setObjectName(QString("Text1(%1)").arg(i));
    angle.Box->setAlignment(Qt::AlignRight);
    angle.Box->setFixedWidth(64);
    angle.Box->setAccessibleName(caption + ", degrees");
    angle.Dial = new AngleDial;
    angle.Dial->setObjectName(QString("Shape1(%1)").arg(i));
    angle.Dial->setAccessibleName(caption + ", dial");
    auto* label = new QLabel(caption);
    label->setBuddy(angle.Box);
    auto* line = new QHBoxLayout;
    line->setSpacing(8);
    line->addStretch();
    line->addWidget(label);
    line->addWidget(angle.Box);
    line->addWidget(new QLabel(QStringLiteral("\u00b0")));
    line->addStretch();
    auto* column = new QVBoxLayout(angle.Panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(angle.Dial, 0, Qt::AlignHCenter);
    column->addLayout(line);
    setTabOrder(angle.Box, angle.Dial);
    row.addWidget(angle.Panel);
    connect(angle.Box, &QLineEdit::textChanged, this, [this, i] { ReadBox(i); });
    connect(angle.Dial, &AngleDial::turned, angle.Box, &QLineEdit::setText);
}

bool RotateDialog::AskFor(Dimensions dimensions)
{
    m_dimensions = dimensions;
    const bool plane = dimensions == Dimensions::Two;
    QWidget& aboutY = *m_angles[1].Panel;
    aboutY.setDisabled(plane);
    aboutY.setToolTip(plane ? "A 2D sheet turns about Z only." : "");
    m_hint->setText(plane ? "Turns the drawing counterclockwise about the origin.\n"
                            "OK replaces the current matrix of the plane."
                          : "Turns the drawing about Z first, then about Y.\n"
                            "OK replaces the current matrix.");
    return Ask();
}

void RotateDialog::ShowAccepted()
{
    for (std::size_t i = 0; i < m_angles.size(); ++i)
        Show(i, m_angles[i].Accepted);
}

void RotateDialog::ShowDefaults()
{
    for (std::size_t i = 0; i < m_angles.size(); ++i)
        Show(i, "0");
}

bool RotateDialog::TakeOver()
{
    m_complaint.stop(); // one message is enough
    const auto wrong = Rotate(m_matrix, m_angles[0].Box->text().toStdString(),
                              m_angles[1].Box->text().toStdString(), m_dimensions);
    if (wrong) {
        Refuse(static_cast<std::size_t>(*wrong));
        return false;
    }
    for (Angle& angle : m_angles)
        angle.Accepted = angle.Box->text();
    return true;
}

QWidget* RotateDialog::FirstField()
{
    return m_angles[0].Box;
}

// Aims the needle also where the text does not change, but a drag has left it a bit aside.
void RotateDialog::Show(std::size_t i, const QString& text)
{
    m_angles[i].Box->setText(text);
    ReadBox(i);
}

// The needle follows the box as far as it can be read. Text that no typing on makes a number is
// refused, but not in the middle of the key press.
void RotateDialog::ReadBox(std::size_t i)
{
    const std::string text = m_angles[i].Box->text().toStdString();
    if (const auto radians = RadiansOf(text)) {
        m_angles[i].Dial->Aim(*radians);
    } else if (!IsBeginningOfNumber(text)) {
        m_wrong = i;
        m_complaint.start();
    }
}

void RotateDialog::Complain()
{
    const std::string text = m_angles[m_wrong].Box->text().toStdString();
    if (isVisible() && !RadiansOf(text) && !IsBeginningOfNumber(text))
        Refuse(m_wrong);
}

void RotateDialog::Refuse(std::size_t i)
{
    ShowProblem(*this, *m_angles[i].Box, QGuiApplication::applicationDisplayName(),
                "Invalid rotation degrees!");
}

} // namespace kelvane
