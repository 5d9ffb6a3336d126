#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <numbers>
#include <ostream>
#include <sstream>
#include <string>

#include "engine/field_runner.h"
#include "engine/formula_generator.h"
#include "engine/support.h"

namespace kelvane {

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
inline constexpr int kBoth = kPartlyUndefined | kMayJump;

struct Span {
    double Low = 0;
    double High = 0;

    bool Holds(double value) const { return Low <= value && value <= High; }
};

inline std::ostream& operator<<(std::ostream& out, const Span& span)
{
    return out << '[' << span.Low << ", " << span.High << ']';
}

struct Box {
    Span X;
    Span Y;
};

// What a field is over one box.
struct Known {
    Span F;
    Span AlongX;
    Span AlongY;
    std::int64_t Marks = 0;
};

// A field with all it takes to run it.
class Bench {
public:
    explicit Bench(const std::string& line, VectorLevel level = BestLevel())
        : Formula(CompileField(Prepared(line)))
        , m_runner(level)
    {
    }

    Known Over(std::size_t at) const
    {
        const auto span = [at](const IntervalColumn& column) {
            return Span{column.Low.At[at], column.High.At[at]};
        };
        return {span(Ranges->F), span(Ranges->AlongX), span(Ranges->AlongY), Ranges->Marks[at]};
    }
    Known Over(const Box& box)
    {
        Put(0, box);
        RunBoxes(1);
        return Over(0);
    }
    double ValueAt(double x, double y)
    {
        Points->X.At[0] = x;
        Points->Y.At[0] = y;
        RunPoints(1);
        return Values->F.At[0];
    }

    void Put(std::size_t at, const Box& box) const
    {
        Boxes->X.Low.At[at] = box.X.Low;
        Boxes->X.High.At[at] = box.X.High;
        Boxes->Y.Low.At[at] = box.Y.Low;
        Boxes->Y.High.At[at] = box.Y.High;
    }
    Box At(std::size_t at) const
    {
        return {{Boxes->X.Low.At[at], Boxes->X.High.At[at]},
                {Boxes->Y.Low.At[at], Boxes->Y.High.At[at]}};
    }
    void RunBoxes(int count)
    {
        m_runner.OverBoxes(Formula, *Boxes, count, FieldPart::WithGradient, *Ranges);
    }
    void RunPoints(int count)
    {
        m_runner.AtPoints(Formula, *Points, count, FieldPart::WithGradient, *Values);
    }

    Field Formula;
    std::unique_ptr<FieldBoxes> Boxes = std::make_unique<FieldBoxes>();
    std::unique_ptr<FieldRanges> Ranges = std::make_unique<FieldRanges>();
    std::unique_ptr<FieldPoints> Points = std::make_unique<FieldPoints>();
    std::unique_ptr<FieldValues> Values = std::make_unique<FieldValues>();

private:
    FieldRunner m_runner;
};

// An expression as the left side of an equation whose right side is 0.
inline std::string EqualsNothing(const std::string& expression)
{
    return expression + "=0";
}

// ---- what to try

inline constexpr const char* kNasties[] = {
    "81-x^2-y^2=abs(81-x^2-y^2)",
    "y=sin(40/x)",
    "tan(y)=tan(x)",
    "y^2=x^3-x^2",
    "x^3+y^3=3*x*y",
    "(x^2+y^2-1)^3=x^2*y^3",
    "y=(x-3)^0.5*(1-x)^0.5",
    "1/x=1/(y-1)",
    "y=x^x",
    "x^y=y^x",
    "y=log(abs(sin(x)))",
    "y=abs(x)/x",
    "y=sin(e^x)",
    "sin(100*x*y)=0",
    "x+abs(x)=y+abs(y)",
    "sin(x)^2+cos(x)^2=1",
    "y=asin(x)^acos(y)",
    "y=(x^2)^.5",
    "y=(x-absx)^.5",
    "y=1/tan(x^2)",
    "y=x^(-3)+y^(-1.5)",
    "y=absx^(1.7)",
    "y=x^19/(y^18-x)",
    "y=e^(-1/x^2)",
    "y=atan(1/x)acos(x-y)",
    "y=1/(x^.5-y^.5)",
    "y=10^(x^3)",
};

// A place that is likely to be a special one.
inline double SpecialPlace(Generator& generator)
{
    static constexpr double kPlaces[] = {0,
                                         1,
                                         -1,
                                         std::numbers::pi / 2,
                                         std::numbers::pi,
                                         3,
                                         -2,
                                         0.5,
                                         std::numbers::pi * 8,
                                         1e-9,
                                         700,
                                         -0.7,
                                         9,
                                         1e6};
    return generator.OneIn(2) ? kPlaces[generator.Below(std::size(kPlaces))]
                              : static_cast<double>(generator.Below(20001)) / 1000 - 10;
}

// A side of any size about a place, or with it as a border; some without extent.
inline Span Side(Generator& generator)
{
    const double place = SpecialPlace(generator);
    const auto size = [&] {
        return std::pow(10.0, -static_cast<double>(generator.Below(140)) / 10 + 1);
    };
    switch (generator.Below(5)) {
    case 0:
        return {place, place};
    case 1:
        return {place, place + size()};
    case 2:
        return {place - size(), place};
    default:
        return {place - size(), place + size()};
    }
}

// A formula in x and y.
inline std::string PlaneFormula(Generator& generator)
{
    std::string line = generator.Formula();
    std::replace(line.begin(), line.end(), 'z', 'y');
    std::replace(line.begin(), line.end(), 'Z', 'x');
    return line;
}

inline std::string Where(const std::string& line, const Box& box, const Known& known)
{
    std::ostringstream where;
    where.precision(17);
    where << testing::PrintToString(line) << " over " << box.X << " times " << box.Y << " f "
          << known.F << " slopes " << known.AlongX << known.AlongY << " marks " << known.Marks;
    return where.str();
}

} // namespace kelvane
