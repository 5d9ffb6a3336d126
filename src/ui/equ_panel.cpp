#include "ui/equ_panel.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>

#include "ui/formula_editor.h"

namespace kelvane {

namespace {

constexpr QSize kKeySize(44, 36);
constexpr int kGap = 48;       // between the editor and the keypad
constexpr int kBelowKeys = 64; // of the row above the graph

struct Stroke {
    int Key = 0;
    QString Text;
};

// The next keystroke of a text, which it is taken off.
Stroke TakeStroke(QString& keys)
{
    const auto close = keys.indexOf('}', 2);
    if (!keys.startsWith('{') || close < 0) {
        const QString text = keys.left(1);
        keys.remove(0, 1);
        return {text.at(0).toUpper().unicode(), text};
    }
    const QString name = keys.mid(1, close - 1);
    keys.remove(0, close + 1);
    if (name == "ENTER")
        return {Qt::Key_Return, "\r"};
    if (name == "BACKSPACE")
        return {Qt::Key_Backspace, "\b"};
    return {name.at(0).toUpper().unicode(), name};
}

} // namespace

EquPanel::EquPanel(FormulaEditor& editor, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus |
                          Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
    , m_editor(editor)
{
    setObjectName("EquPanel");
    setWindowTitle("New Equation");
    setAttribute(Qt::WA_ShowWithoutActivating);
    m_screen = new QLineEdit;
    m_screen->setObjectName("Screen");
    m_screen->setAccessibleName("Screen");
    m_screen->setReadOnly(false);
    m_screen->setFocusPolicy(Qt::NoFocus);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(12, 12, 12, 12);
    grid->setSpacing(4);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    grid->addWidget(m_screen, 0, 0, 1, 8);

    const char* const functions[] = {"sin", "asin", "cos", "acos", "tan", "atan", "log", "abs"};
    const char* const letters[] = {"s", "as", "c", "ac", "t", "at", "l", "ab"};
    for (int i = 0; i < 8; ++i)
        AddKey(QString("Functions(%1)").arg(i), functions[i], letters[i], 1 + i / 2, i % 2);
    const char* const variables[] = {"x", "y", "z"};
    for (int i = 0; i < 3; ++i)
        AddKey(QString("Variables(%1)").arg(i), variables[i], variables[i], 1 + i, 2);
    AddKey("Equal", "=", "=", 4, 2);
    AddKey("Constants(0)", QString(QChar(0x03c0)), "p", 1, 3);
    AddKey("Constants(1)", "e", "e", 2, 3);
    AddKey("Pranthesis(0)", "(", "{(}", 3, 3);
    AddKey("Pranthesis(1)", ")", "{)}", 4, 3);
    for (int digit = 1; digit <= 9; ++digit)
        AddKey(QString("Numbers(%1)").arg(digit), QString::number(digit), QString::number(digit),
               3 - (digit - 1) / 3, 4 + (digit - 1) % 3);
    AddKey("Numbers(0)", "0", "0", 4, 4, 2);
    AddKey("Dot", ".", ".", 4, 6);
    const char* const operators[] = {"+", "\u2212", "\u00d7", "\u00f7"};
    const char* const operatorKeys[] = {"{+}", "-", "*", "/"};
    for (int i = 0; i < 4; ++i)
        AddKey(QString("Operators(%1)").arg(i), QString::fromUtf8(operators[i]), operatorKeys[i],
               4 - i, 7);
    AddKey("BackSpace", "Backspace", "{BACKSPACE}", 5, 4, 4);

    m_power = new QPushButton("^");
    m_power->setObjectName("Power");
    m_power->setAccessibleName("Power");
    m_power->setFocusPolicy(Qt::NoFocus);
    m_power->setMinimumSize(kKeySize);
    connect(m_power, &QPushButton::clicked, this, &EquPanel::PressPower);
    connect(&m_editor, &QTextEdit::cursorPositionChanged, this, &EquPanel::FollowEditor);
    connect(&m_editor, &QTextEdit::currentCharFormatChanged, this, &EquPanel::FollowEditor);
    grid->addWidget(m_power, 5, 0, 1, 4);
}

void EquPanel::AddKey(const QString& name, const QString& caption, const QString& keys, int row,
                      int column, int columns)
{
    auto* button = new QPushButton(caption);
    button->setObjectName(name);
    button->setFocusPolicy(Qt::NoFocus);
    button->setMinimumSize(kKeySize);
    connect(button, &QPushButton::clicked, this, [this, keys] {
        Equp(m_editor, keys);
        Equp(*m_screen, keys);
    });
    static_cast<QGridLayout*>(layout())->addWidget(button, row, column, 1, columns);
}

void EquPanel::Open()
{
    m_open = true;
    m_screen->clear();
    EndPower();
    if (!m_placed) // beside the editor, below the keys
        move(m_editor.mapToGlobal(QPoint(m_editor.width() + kGap, kBelowKeys)));
    m_placed = true;
    show();
    raise();
    m_editor.setFocus();
}

QString EquPanel::ScreenText() const
{
    return m_screen->text();
}

void EquPanel::PressPower()
{
    if (m_typingPower) {
        m_pressing = true;
        Equp(m_editor, "{ENTER}");
        Equp(*m_screen, "{)}");
        m_pressing = false;
        EndPower();
        return;
    }
    m_pressing = true;
    Equp(m_editor, "{^}");
    Equp(*m_screen, "{^}{(}");
    m_pressing = false;
    m_typingPower = true;
    m_power->setText(")");
}

void EquPanel::EndPower()
{
    m_typingPower = false;
    m_power->setText("^");
}

// Ends the power here too when it has ended in the editor: by its own Enter, or on another line.
void EquPanel::FollowEditor()
{
    if (!m_typingPower || m_pressing || m_editor.CaretIsRaised())
        return;
    Equp(*m_screen, "{)}");
    EndPower();
}

void EquPanel::Equp(QWidget& target, const QString& keys)
{
    if (&target == &m_editor)
        m_editor.setFocus();
    QString rest = keys;
    while (!rest.isEmpty()) {
        const Stroke stroke = TakeStroke(rest);
        QKeyEvent press(QEvent::KeyPress, stroke.Key, Qt::NoModifier, stroke.Text);
        QCoreApplication::sendEvent(&target, &press);
        QKeyEvent release(QEvent::KeyRelease, stroke.Key, Qt::NoModifier, stroke.Text);
        QCoreApplication::sendEvent(&target, &release);
    }
}

void EquPanel::closeEvent(QCloseEvent* event)
{
    m_open = false;
    QWidget::closeEvent(event);
}

} // namespace kelvane
