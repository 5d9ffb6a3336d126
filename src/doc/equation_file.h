#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "doc/rich_page.h"

// Equation files: all pages of the editor as one RTF document, with three lines of the system's
// own before the first equation. Every word processor opens them. Lines end with CR LF.
//
//     {\rtf1 ...                     header: up to three lines that begin with "{", each a complete
//     {\fonttbl ...                  group, but for the first one, which opens the document
//     {\colortbl ...
//     v3.5                           version of the layout
//      24                            slots: pages x (lines per page + 1), between blanks
//     \par Kelvane II - ...\par\par  identification
//     \plain\f0\fs26 y=x{\super 2}   the first line of a page, not begun by "\par"
//     \par y=2x                      each further line
//     \par                           the slot beyond the last line, always empty
//     \par                           end of the page, whose next one goes on in this paragraph
//     }                              end of the document

namespace kelvane {

inline constexpr std::size_t kMaxFileSize = std::size_t{64} << 20; // in bytes

// Lines of the editor never grow longer, in UTF-16 units.
inline constexpr int kMaxLineLength = 4000;

// The file's text for these pages, at least one, each of linesPerPage lines at most; missing lines
// are empty.
std::string WriteEquationFile(const std::vector<RichPage>& pages, int linesPerPage);

enum class FileFault : std::uint8_t {
    None,
    Malformed,    // neither an equation file nor RTF, cut off, or braces that do not match
    TooLarge,     // the file, or a line of it
    TooManyPages, // more than there can be, or too many empty lines
};

struct EquationFileText {
    std::vector<RichPage> Pages; // at least one, each of linesPerPage lines in the canonical form:
                                 // no empty runs, neighbours differ in level. With a fault, the
                                 // pages read so far
    FileFault Fault = FileFault::None;
};

// Reads what WriteEquationFile wrote, character for character, except that pi comes back as "p"
// and line breaks inside of runs end the line. When it was written for another number of lines, or
// when lines were added, each page of the file begins a new page and goes on on further ones when
// its lines do not fit; empty lines at its end do not count. Lines may also end with LF alone, and
// lines that do not begin with "\par" go on in the paragraph before.
//
// Any other RTF document opens as its lines. If it is an equation file saved by a word processor,
// without the system's own lines, and with its pages as long as their slots are as they were.
//
// At least one line per page and one page must be allowed.
EquationFileText ReadEquationFile(std::string_view text, int linesPerPage, int maxPages);

// The part of the text from the position to the next CR LF, without them; the position moves past
// them. Empty at the end.
std::string_view NextLine(std::string_view text, std::size_t& position);

} // namespace kelvane
