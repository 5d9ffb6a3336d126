#include "ui/number_spin.h"

#include <gtest/gtest.h>

#include <tuple>

namespace kelvane {

TEST(NumberSpin, StepLeavesTheBoundsOrSpoilsTheText)
{
    using enum NumberSpin::Steps;
    const std::tuple<NumberSpin::Steps, const char*, int, const char*> cases[] = {
        {Whole, "20", 1, "21"},    {Whole, "20", -1, "19"},   {Whole, "1", -1, "1"},
        {Whole, "99.5", 1, "100"}, {Whole, "100", 1, "100"},  {Whole, "250", 1, "250"},
        {Whole, "250", -1, "249"}, {Whole, "20.5", -1, "20"}, {Whole, "0", -10, "1"},
        {Whole, "95", 10, "100"},  {Any, "1,5", 1, "2.5"},    {Any, "20.5", -1, "19.5"},
    };
    for (const auto& [steps, text, count, after] : cases) {
        NumberSpin spin(1, 100, steps, "Number");
        spin.Edit().setText(text);
        spin.stepBy(count);
        EXPECT_EQ(spin.Edit().text().toStdString(), after) << text;
    }
    NumberSpin spin(1, 100, Whole);
    spin.SetValue(7);
    spin.Edit().setText("abc");
    spin.stepBy(1);
    EXPECT_EQ(spin.Edit().text(), "8") << "from the last number";
}

} // namespace kelvane
