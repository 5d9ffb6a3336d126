#include "ui/editor_keys.h"

#include <QKeyEvent>
#include <algorithm>
#include <array>
#include <utility>

#include "ui/editor_page.h"

namespace kelvane {

Qt::KeyboardModifiers ModifiersOf(const QKeyEvent& event)
{
    return event.modifiers() & ~Qt::KeypadModifier;
}

std::optional<TopKey> TopKeyOf(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = ModifiersOf(event);
    // On many keyboards the plus sign needs Shift.
    if (event.key() == Qt::Key_Plus && modifiers == (Qt::ControlModifier | Qt::ShiftModifier))
        return TopKey::ZoomIn;
    if (modifiers != Qt::ControlModifier)
        return {};
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return TopKey::Draw;
    case Qt::Key_C:
    case Qt::Key_Delete:
        return TopKey::Clear;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return TopKey::ZoomIn;
    case Qt::Key_Minus:
        return TopKey::ZoomOut;
    case Qt::Key_X:
        return TopKey::Center;
    default:
        return {};
    }
}

bool IsEnter(const QKeyEvent& event)
{
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
           (ModifiersOf(event) & ~Qt::ShiftModifier) == 0;
}

bool IsInsert(const QKeyEvent& event, Qt::KeyboardModifier modifier)
{
    return event.key() == Qt::Key_Insert && ModifiersOf(event) == modifier;
}

bool IsModifier(const QKeyEvent& event)
{
    constexpr std::array kKeys{Qt::Key_Shift, Qt::Key_Control,  Qt::Key_Alt,    Qt::Key_AltGr,
                               Qt::Key_Meta,  Qt::Key_CapsLock, Qt::Key_NumLock};
    return std::find(kKeys.begin(), kKeys.end(), event.key()) != kKeys.end();
}

bool IsTyping(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = ModifiersOf(event) & ~Qt::ShiftModifier;
    return modifiers != Qt::ControlModifier && !(modifiers & Qt::MetaModifier) &&
           !ShownText(event.text()).isEmpty();
}

bool IsHarmless(const QKeyEvent& event)
{
    constexpr std::array kMoves{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                                Qt::Key_Home, Qt::Key_End,   Qt::Key_PageUp, Qt::Key_PageDown};
    return std::find(kMoves.begin(), kMoves.end(), event.key()) != kMoves.end() ||
           event.matches(QKeySequence::SelectAll);
}

QString CompletionOf(const QString& letter, QChar before)
{
    static constexpr std::pair<QChar, const char*> kCompletions[] = {
        {u's', "in"}, {u'c', "os"}, {u't', "an"}, {u'l', "og"}, {u'b', "s"}};
    const QChar lower = before.toLower();
    if ((lower >= u'b' && lower <= u'z') || lower == kPi)
        return {};
    for (const auto& [first, rest] : kCompletions)
        if (letter.toLower() == first)
            return QString::fromLatin1(rest);
    return {};
}

} // namespace kelvane
