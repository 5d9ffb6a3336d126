#include "ui/settings_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/help_viewer.h"

namespace kelvane {

void ShowProblem(QWidget& dialog, QLineEdit& field, const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::NoIcon, title, text, QMessageBox::Ok, &dialog);
    box.setTextFormat(Qt::PlainText);
    box.exec();
    field.setStyleSheet(QString("border: 1px solid %1;").arg(kWrongColor));
    QObject::connect(
        &field, &QLineEdit::textChanged, &field, [&field] { field.setStyleSheet({}); },
        Qt::SingleShotConnection);
    field.setFocus();
    field.selectAll();
}

SettingsDialog::SettingsDialog(const QString& title, const QString& heading, QWidget* parent,
                               Buttons buttons)
    : QDialog(parent)
{
    setWindowTitle(title);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(12);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    if (!heading.isEmpty()) {
        auto* label = new QLabel(heading);
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * 1.25);
        font.setBold(true);
        label->setFont(font);
        layout->addWidget(label);
    }
    m_content = new QVBoxLayout;
    m_content->setSpacing(8);
    layout->addLayout(m_content);
    auto* box = new QDialogButtonBox;
    const auto add = [&](Button which, QDialogButtonBox::StandardButton standard,
                         const char* name) -> QPushButton* {
        if (!buttons.testFlag(which))
            return nullptr;
        QPushButton* button = box->addButton(standard);
        button->setObjectName(name);
        button->setAutoDefault(which == Ok);
        return button;
    };
    if (QPushButton* ok = add(Ok, QDialogButtonBox::Ok, "Command1"))
        ok->setDefault(true);
    add(Cancel, QDialogButtonBox::Cancel, "Command2");
    if (QPushButton* standard = add(Default, QDialogButtonBox::RestoreDefaults, "Command3")) {
        standard->setText("Default");
        connect(standard, &QPushButton::clicked, this, [this] {
            ShowDefaults();
            FocusFirst();
        });
    }
    if (QPushButton* help = add(Help, QDialogButtonBox::Help, "Command4")) {
        connect(help, &QPushButton::clicked, this, [this] { Q_EMIT helpRequested(windowTitle()); });
    }
    connect(this, &SettingsDialog::helpRequested, this,
            [this](const QString& topic) { ShowHelp(this, topic); });
    connect(box, &QDialogButtonBox::accepted, this, &SettingsDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);
    layout->addWidget(box);
}

bool SettingsDialog::Ask()
{
    ShowAccepted();
    FocusFirst();
    return exec() == Accepted;
}

void SettingsDialog::accept()
{
    if (TakeOver())
        QDialog::accept();
}

void SettingsDialog::reject()
{
    ShowAccepted();
    QDialog::reject();
}

void SettingsDialog::FocusFirst()
{
    QWidget* first = FirstField();
    if (first == nullptr)
        return;
    first->setFocus();
    if (auto* edit = qobject_cast<QLineEdit*>(first))
        edit->selectAll();
}

} // namespace kelvane
