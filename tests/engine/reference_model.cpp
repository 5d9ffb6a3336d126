#include "engine/reference_model.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <variant>

#include "engine/scalar_math.h"

namespace kelvane::reference {
namespace {

constexpr const char* kDigits = "0123456789";
constexpr const char* kDigitsAndLetters = "0123456789abcdefghijklmnopqrstuvwxyz";

bool In(std::string_view set, char c)
{
    return set.find(c) != std::string_view::npos;
}

// Without blanks and tabs, ASCII letters in lower case.
std::string Fold(std::string_view text)
{
    std::string folded;
    for (const char c : text) {
        if (!In(" \t", c))
            folded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return folded;
}

// The function whose name begins here, as in Factor, and the name's length; '0' for none, with the
// two characters that an "a" spoils where it begins no name.
std::pair<char, std::size_t> NameAt(std::string_view text, std::size_t at)
{
    const std::string_view start = text.substr(std::min(at, text.size()), 2);
    if (start == "ab")
        return {'b', 3};
    if (start == "as" || start == "ac" || start == "at")
        return {static_cast<char>(start[1] - 'a' + 'A'), 4};
    if (!start.empty() && In("sctl", start[0]))
        return {start[0], 3};
    return {'0', start.substr(0, 1) == "a" ? 2 : 0};
}

using Place = std::optional<std::size_t>;

// Where the bracket's partner stands.
Place Partner(std::string_view text, std::size_t bracket)
{
    int depth = 0;
    for (std::size_t i = bracket; i < text.size(); text[bracket] == '(' ? ++i : --i) {
        depth += (text[i] == '(' ? 1 : 0) - (text[i] == ')' ? 1 : 0);
        if (depth == 0)
            return i;
    }
    return {};
}

// Needs a character in front of the power.
Place BaseStart(std::string_view text, std::size_t power)
{
    const std::size_t last = power - 1;
    if (In("xyzep", text[last]))
        return last;
    if (In(kDigits, text[last])) // where all in front are digits, npos + 1 is 0
        return text.substr(0, power).find_last_not_of(kDigits) + 1;
    const Place open = text[last] == ')' ? Partner(text, last) : Place();
    return open ? text.substr(0, *open).find_last_not_of(kDigitsAndLetters) + 1 : open;
}

// One past the exponent that begins at start.
Place ExponentEnd(std::string_view text, std::size_t start)
{
    if (const auto [function, length] = NameAt(text, start); function != '0')
        return ExponentEnd(text, start + length);
    if (start >= text.size())
        return {};
    if (In("xyzep", text[start]))
        return start + 1;
    if (In(kDigits, text[start]))
        return std::min(text.find_first_not_of(kDigits, start), text.size());
    const Place close = text[start] == '(' ? Partner(text, start) : Place();
    return close ? *close + 1 : close;
}

std::string BracketPowers(std::string text)
{
    for (std::size_t at = text.find('^', 1); at != std::string::npos; at = text.find('^', at + 1)) {
        const Place start = BaseStart(text, at);
        const Place end = ExponentEnd(text, at + 1);
        if (start && end) {
            text.insert(*end, 1, ')').insert(*start, 1, '(');
            ++at; // the same "^", now behind the new bracket
        }
    }
    return text;
}

// Kind is a mark, a variable, a function as in Factor, '1' for a number or constant, or '0' for
// what reads as the end: a number worth 0, an "a" that begins no name, and all behind the text.
struct Lexeme {
    char Kind = '0';
    float Value = 0;
};

std::vector<Lexeme> Lex(std::string_view text)
{
    std::vector<Lexeme> lexemes;
    std::size_t next = 0;
    for (std::size_t at = 0; at < text.size(); at = next) {
        const char c = text[at];
        next = at + 1;
        if (const auto [function, length] = NameAt(text, at); length > 0) {
            lexemes.push_back({function});
            next = at + length;
        } else if (In("ep", c)) {
            lexemes.push_back({'1', c == 'e' ? 2.718282F : 3.141592F});
        } else if (In("xyz+-*/^()=", c)) {
            lexemes.push_back({c});
        } else { // the first stretch of digits and points counts, up to a second point
            next = std::min(text.find_first_of("xyz+-*/^()=epsctla", at), text.size());
            std::string run(text.substr(at, next - at));
            run.erase(0, run.find_first_of("0123456789."));
            const float value = std::strtof(run.c_str(), nullptr);
            lexemes.push_back({value == 0 ? '0' : '1', value});
        }
    }
    lexemes.resize(lexemes.size() + 2); // two ends
    return lexemes;
}

struct Parser {
    const std::vector<Lexeme>& Lexemes;
    std::size_t Next = 0;

    Lexeme Take() { return Lexemes[std::min(Next++, Lexemes.size() - 1)]; }

    // Takes the lexeme that ends the sum along: ")", "=" or an end.
    Sum ReadSum()
    {
        Sum sum(1);
        while (true) {
            const Lexeme lexeme = Take();
            if (In(")=0", lexeme.Kind))
                return sum;
            if (In("+-", lexeme.Kind))
                sum.push_back({lexeme.Kind, {}});
            else
                sum.back().Links.push_back(ReadLink(lexeme));
        }
    }

    // The one factor behind "*", "/", "^" or a function. A mark that is none is taken for it: worth
    // 0, which "*", "/" and "^" still join with an operand of their own.
    Sum ReadOperand()
    {
        const Lexeme lexeme = Take();
        return In("+-)=0", lexeme.Kind) ? Sum() : Sum{{'+', {ReadLink(lexeme)}}};
    }

    Link ReadLink(Lexeme first)
    {
        if (In("*/^", first.Kind))
            return {first.Kind, {'(', 0, ReadOperand()}};
        if (In("1xyz", first.Kind))
            return {' ', {first.Kind, first.Value, {}}};
        return {' ', {first.Kind, 0, first.Kind == '(' ? ReadSum() : ReadOperand()}};
    }
};

// The right side begins behind "=". Where two neighbouring lexemes without a token come first, the
// second of them alone is the right side.
Sum ReadRightSide(const std::vector<Lexeme>& lexemes)
{
    for (std::size_t at = 0;; ++at) {
        if (lexemes[at].Kind == '=')
            return Parser{lexemes, at + 1}.ReadSum();
        if (In("01", lexemes[at].Kind) && In("01", lexemes[at + 1].Kind))
            return Parser{lexemes, at + 1}.ReadOperand();
    }
}

struct Failure {};

using Number = std::variant<float, double>; // the width is part of the value

double Wide(Number a)
{
    return std::visit([](auto v) { return static_cast<double>(v); }, a);
}

// C++ gives a float for two floats and a double otherwise. Every factor comes through here, so this
// is where overflow, division by 0, a bad argument and a literal beyond a float's range fail.
Number Join(char join, Number a, Number b)
{
    const auto operation = [join](auto l, auto r) -> Number {
        if (join == ' ' && l == 0)
            return r;
        return join == '+'   ? l + r
               : join == '-' ? l - r
               : join == '/' ? l / r
               : join == '^' ? static_cast<decltype(l * r)>(Power(double{l}, double{r}))
                             : l * r;
    };
    const Number result = std::visit(operation, a, b);
    return std::isfinite(Wide(result)) ? result : throw Failure();
}

double ArcSine(double a)
{
    return std::abs(a) < 1 ? ArcTangent(a / std::sqrt(1 - a * a)) : throw Failure();
}

double ArcCosine(double a)
{
    return ArcSine(-a) + 2 * ArcTangent(1.0);
}

Number ValueOf(const Factor& factor, const Point& point);

Number ValueOf(const Sum& sum, const Point& point)
{
    Number total = 0.0F;
    for (const Term& term : sum) {
        Number value = 0.0F;
        for (const Link& link : term.Links)
            value = Join(link.Join, value, ValueOf(link.Right, point));
        if (Wide(value) != 0)
            total = Join(term.Sign, total, value);
    }
    return total;
}

Number ValueOf(const Factor& factor, const Point& point)
{
    static const std::map<char, double (*)(double)> functions = {
        {'s', Sine},     {'c', Cosine},  {'t', Tangent},   {'l', Logarithm},
        {'b', std::abs}, {'S', ArcSine}, {'C', ArcCosine}, {'T', ArcTangent}};
    if (factor.Kind == '1')
        return factor.Literal;
    if (In("xyz", factor.Kind))
        return point[static_cast<std::size_t>(factor.Kind - 'x')];
    const Number inner = ValueOf(factor.Inner, point);
    return factor.Kind == '(' ? inner : functions.at(factor.Kind)(Wide(inner));
}

} // namespace

Formula Parse(std::string_view text)
{
    const std::vector<Lexeme> lexemes = Lex(BracketPowers(Fold(text)));
    return {Parser{lexemes}.ReadSum(), ReadRightSide(lexemes)};
}

std::optional<double> Evaluate(const Sum& side, const Point& point)
{
    try {
        return Wide(ValueOf(side, point));
    } catch (const Failure&) {
        return {};
    }
}

} // namespace kelvane::reference
