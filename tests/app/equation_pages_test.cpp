#include "app/equation_pages.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(EquationPages, EquationsOfDifferentPagesShareATick)
{
    EquationPages pages{.LinesPerPage = 20};
    EXPECT_EQ(EquationSlot(pages, 0, 0), 1);
    EXPECT_EQ(EquationSlot(pages, 0, 19), 20);
    EXPECT_EQ(EquationSlot(pages, 1, 0), 22); // one number lies between two pages
    EXPECT_EQ(EquationSlot(pages, 3, 5), 69);
}

TEST(EquationPages, PageIsLostOrBeginsFilled)
{
    EquationPages pages{.LinesPerPage = 2};
    SheetText sheet;
    EXPECT_EQ(PageLabel(pages), "1/1");
    StorePage(pages, sheet, {{{"y=x", false}, {"2", true}}});
    pages.PageText[1] = {{{"left from a closed document", false}}};
    EXPECT_EQ(GoToNextPage(pages), PageStep::Moved);
    EXPECT_EQ(PageLabel(pages), "2/2");
    EXPECT_TRUE(pages.PageText[1].empty());
    StorePage(pages, sheet, {{{"z=1", false}}, {}, {{"too much", false}}});
    EXPECT_EQ(sheet.PagePlain[0], "y=x^(2)\r\r");
    EXPECT_EQ(sheet.PagePlain[1], "z=1\r\r");
    pages.CurrentPage = 0;
    EXPECT_EQ(GoToNextPage(pages), PageStep::Moved);
    EXPECT_EQ(PageLabel(pages), "2/2");
    EXPECT_EQ(pages.PageText[1].size(), 2U) << "a page in use is kept";
}

TEST(EquationPages, PageAfterTheHundredthOpens)
{
    EquationPages pages{.LinesPerPage = 5};
    for (int i = 1; i < 100; ++i)
        EXPECT_EQ(GoToNextPage(pages), PageStep::Moved) << i;
    EXPECT_EQ(GoToNextPage(pages), PageStep::LimitReached);
    EXPECT_EQ(PageLabel(pages), "100/100");
}

} // namespace
} // namespace kelvane
