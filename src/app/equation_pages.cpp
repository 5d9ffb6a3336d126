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

std::vector<RichPage> PagesInUse(const EquationPages& pages)
{
    const auto begin = pages.PageText.begin();
    return {begin, begin + pages.LastPage + 1};
}

void SetPages(EquationPages& pages, SheetText& sheet, std::vector<RichPage> texts)
{
    pages.PageText = {};
    sheet.PagePlain = {};
    pages.LastPage = static_cast<int>(texts.size()) - 1;
    for (pages.CurrentPage = pages.LastPage; pages.CurrentPage > 0; --pages.CurrentPage)
        StorePage(pages, sheet, std::move(texts[static_cast<std::size_t>(pages.CurrentPage)]));
    StorePage(pages, sheet, std::move(texts.front()));
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
