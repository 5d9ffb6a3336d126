#pragma once

#include <QCommandLineParser>

#include "app/shared_state.h"

// The options of "draw" for colours, transforms and the kind of sheet.

namespace kelvane {

void AddLookOptions(QCommandLineParser& parser);

// Reads them into the state; the text says what is wrong with one, if anything.
QString ReadLook(const QCommandLineParser& parser, SharedState& state);

} // namespace kelvane
