#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace kelvane {

// Lines to compare: formulas as they are written and nastier, and noise.
class Generator {
public:
    static constexpr std::uint32_t kSeed = 20240611;

    std::string Formula()
    {
        m_budget = 40;
        std::string line = OneIn(6) ? Terms(2).append("=") : Pick("y=|y=|y=|Y=|z=|x=||2e=|y=x=");
        line += Terms(static_cast<int>(Below(7)));
        if (OneIn(5))
            line.insert(Below(line.size() + 1), 1, OneIn(2) ? ' ' : '\t');
        return line;
    }

    std::size_t Below(std::size_t limit) { return m_random() % limit; }
    bool OneIn(std::size_t count) { return Below(count) == 0; }

    std::string Noise()
    {
        static constexpr std::string_view kAlphabet = "xyzepsctlab()+-*/^=.0123456789 \t";
        const bool anyByte = OneIn(4);
        std::string line = Pick("|y=");
        for (std::size_t length = Below(40); length > 0; --length)
            line += anyByte ? static_cast<char>(Below(256)) : kAlphabet[Below(kAlphabet.size())];
        std::erase(line, '\r');
        return line;
    }

    std::array<float, 3> Place() { return {Coordinate(), Coordinate(), Coordinate()}; }

private:
    float Coordinate()
    {
        static constexpr float kEdges[] = {0,      0,      -0.0F, 1,      -1,    0.5F, -0.5F,     2,
                                           1e-40F, 1e-20F, 3e38F, -3e38F, 1e20F, 3,    1.5707964F};
        if (OneIn(3))
            return kEdges[Below(std::size(kEdges))];
        return static_cast<float>(Below(20001)) / 1000.0F - 10.0F;
    }

    // One of the words between the bars.
    std::string Pick(std::string_view words)
    {
        const auto bars = static_cast<std::size_t>(std::count(words.begin(), words.end(), '|'));
        for (std::size_t skip = Below(bars + 1); skip > 0; --skip)
            words.remove_prefix(words.find('|') + 1);
        return std::string(words.substr(0, words.find('|')));
    }

    std::string Terms(int depth)
    {
        std::string text = Pick("|||-");
        text += Term(depth);
        for (std::size_t more = m_budget > 0 ? Below(3) : 0; more > 0; --more)
            text.append(Pick("+|-")).append(Term(depth));
        return text;
    }

    std::string Term(int depth)
    {
        std::string text = Power(depth);
        for (std::size_t more = m_budget > 0 ? Below(4) : 0; more > 0; --more) {
            text += OneIn(25) ? Pick("*-|/+|**|*/|/-|*^|--|+*") : Pick("||||*|*|*|/|/");
            text += Power(depth);
        }
        return text;
    }

    std::string Power(int depth)
    {
        std::string text = Factor(depth);
        if (OneIn(6))
            text.append("^").append(
                depth > 0 && OneIn(3)
                    ? Group(depth - 1)
                    : Pick("2|3|x|y|10|0|.5|-1|e|sinx|AbsY|coslog(z)|^2|2^3|*2||(2)x"));
        return text;
    }

    std::string Factor(int depth)
    {
        --m_budget;
        const bool nested = depth > 0 && m_budget > 0;
        if (nested && OneIn(3))
            return Group(depth - 1);
        if (!OneIn(4))
            return Leaf();
        std::string call = Pick("Sin|sin|Cos|cos|tan|TAN|Log|log|Abs|ABS|abx|Sqr|cxx|"
                                "asin|ASIN|Acos|acos|Atan|atan|aCC^");
        return call.append(nested && !OneIn(4) ? Group(depth - 1) : Leaf());
    }

    std::string Group(int depth)
    {
        return std::string(1, '(').append(OneIn(60) ? "" : Terms(depth)).append(1, ')');
    }

    std::string Leaf()
    {
        if (OneIn(300))
            return Pick("1000000000000000000000000000000000000000|"
                        "340282350000000000000000000000000000000|"
                        ".000000000000000000000000000000000000000000001|"
                        ".0000000000000000000000000000000000000000000001");
        if (OneIn(40))
            return Pick("(x-absx)|(absx)|(x-x)|(1-1)|()|(absx-absx)|(abs2)|(x)");
        if (OneIn(25))
            return Pick("0|00|0.0|.5|5.|1.2.3|.|16777217|33.333333333333333333|k3|2k5|a");
        return Pick("x|x|x|x|X|X|y|y|Y|z|Z|e|E|p|P|1|2|3|4|12|0.1|2.5|7.25|1.001|10.718");
    }

    std::mt19937 m_random{kSeed};
    int m_budget = 0; // factors until a line ends without further nesting
};

} // namespace kelvane
