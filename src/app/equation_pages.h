#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "doc/rich_page.h"
#include "engine/equations.h"
#include "engine/preparation.h"

namespace kelvane {

// The pages of the formula editor: which there are and which one is shown. All of them hold
// LinesPerPage lines.
struct EquationPages {
    // Index of the last page there can be; the arrays have room beyond it.
    static constexpr int kLastPossible = 99;

    std::array<RichPage, kMaxPages> PageText{}; // empty: never filled; written when a page is left
    int CurrentPage = 0;                        // the one in the editor
    int LastPage = 0;                           // the last one in use
    int LinesPerPage = 1;                       // fixed once the window has its first layout
};

// The equation number of a line of a page, both from 0; the place of its tick.
int EquationSlot(const EquationPages& pages, int page, int line);

// Keeps what the editor holds of the current page, also as the plain text that draws read.
void StorePage(EquationPages& pages, SheetText& sheet, RichPage text);

// All pages in use, in order, as they were stored.
std::vector<RichPage> PagesInUse(const EquationPages& pages);

// Puts other pages, 1 to kLastPossible + 1 of them, in the place of all; the first one is current.
void SetPages(EquationPages& pages, SheetText& sheet, std::vector<RichPage> texts);

enum class PageStep : std::uint8_t { Moved, LimitReached };

// What Enter on the last line does: on to the next page, which is new and empty after the last one
// in use. The caller stores the current page before. At the limit nothing changes.
PageStep GoToNextPage(EquationPages& pages);

// The page label: "2/3" on the second of three pages.
std::string PageLabel(const EquationPages& pages);

} // namespace kelvane
