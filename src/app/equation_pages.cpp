#include "app/equation_pages.h"

#include <utility>

namespace kelvane {

int EquationSlot(const EquationPages& pages, int page, int line)
{
    return page * (pages.LinesPerPage + 1) + line + 1;
}

void StorePage(EquationPages& pages, SheetText& sheet, RichPage text)
{
    const auto index = static_cast<std::size_t>(pages.CurrentPage);
    text.resize(static_cast<std::size_t>(pages.LinesPerPage));
    sheet.LinesPerPage = pages.LinesPerPage;
    sheet.PagePlain[index] = PowerToPlain(text);
    pages.PageText[index] = std::move(text);
}

PageStep GoToNextPage(EquationPages& pages)
{
    if (pages.CurrentPage >= EquationPages::kLastPossible)
        return PageStep::LimitReached;
    if (pages.CurrentPage == pages.LastPage) {
        ++pages.LastPage;
        pages.PageText[static_cast<std::size_t>(pages.LastPage)].clear();
    }
    ++pages.CurrentPage;
    return PageStep::Moved;
}

std::string PageLabel(const EquationPages& pages)
{
    return std::to_string(pages.CurrentPage + 1) + "/" + std::to_string(pages.LastPage + 1);
}

} // namespace kelvane
