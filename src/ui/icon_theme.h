#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

namespace kelvane {

// The icon drawn in ":/icons/NAME.svg", sharp at every size and device pixel ratio; a null icon if
// there is no such drawing.
//
// Strokes in "currentColor" are painted in the application palette's colour of the role, taken anew
// whenever the icon is painted, so that a change of scheme needs no new icons. Disabled icons take
// the palette's disabled colour, selected ones that of selected text. Other colours stay.
//
// A palette set on a single widget is not seen. Where the ground is the accent colour, ask for the
// role HighlightedText.
QIcon ThemeIcon(const QString& name, QPalette::ColorRole role = QPalette::ButtonText);

} // namespace kelvane
