#pragma once

#include <QString>
#include <optional>

class QKeyEvent;

// What a key asks of the formula editor.

namespace kelvane {

// Keys of the main window by their index there. The editor presses all but WinZoom by keyboard.
enum class TopKey { Draw = 0, ZoomIn = 1, ZoomOut = 2, WinZoom = 3, Clear = 4, Center = 5 };

// Ctrl with Enter, plus or = (of either part of the keyboard), minus, C or Delete, X.
std::optional<TopKey> TopKeyOf(const QKeyEvent& event);

// Shift, Ctrl, Alt, without a mark for the keypad.
Qt::KeyboardModifiers ModifiersOf(const QKeyEvent& event);

bool IsEnter(const QKeyEvent& event); // also with Shift
bool IsInsert(const QKeyEvent& event, Qt::KeyboardModifier modifier);
bool IsModifier(const QKeyEvent& event); // such as Shift itself

// Whether the key types something that can be shown. Ctrl and Alt together are AltGr, which types
// on many keyboards.
bool IsTyping(const QKeyEvent& event);

// Whether the key at most moves the caret or the selection.
bool IsHarmless(const QKeyEvent& event);

// What completes a typed letter to a function's name; empty when nothing does. A letter before
// prevents it, except "a", with which it makes asin, acos, atan and abs.
QString CompletionOf(const QString& letter, QChar before);

} // namespace kelvane
