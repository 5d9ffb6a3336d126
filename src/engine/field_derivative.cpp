#include "engine/field_graph.h"

#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

// Differentiates along one variable. What a derivative fails at matters to nobody, so a product
// with 0 is 0.
class Differentiator {
public:
    Differentiator(FieldGraph& graph, int variable)
        : m_graph(graph)
        , m_variable(variable)
        , m_one(graph.Constant(1))
    {
    }

    int Of(int node);

private:
    int Times(int a, int b);
    int Plus(int a, int b);
    std::pair<int, int> FactorsOf(int node) const;
    int Over(int a, int b) { return a == FieldGraph::kZero ? a : m_graph.Divide(a, b); }
    int Square(int a) { return m_graph.Multiply(a, a); }
    int OneMinusSquare(int a) { return m_graph.Subtract(m_one, Square(a)); }
    int OnePlusSquare(int a) { return m_graph.Add(m_one, Square(a)); }

    int Slope(int node);
    int QuotientSlope(int node);
    int ConstantPowerSlope(int node, double exponent);
    double RootExponent(int node) const;
    int PowerSlope(int node);
    int FunctionSlope(int node);
    int SlopeOf(int node) const { return m_slopes[static_cast<std::size_t>(node)]; }

    FieldGraph& m_graph;
    int m_variable;
    int m_one;                 // the node of the constant 1
    std::vector<int> m_slopes; // by node
};

// Constants are drawn together.
int Differentiator::Times(int a, int b)
{
    if (a == FieldGraph::kZero || b == FieldGraph::kZero)
        return FieldGraph::kZero;
    const FieldNode factor = m_graph.At(b);
    const bool isScaled = factor.Kind == OperandKind::Register &&
                          factor.Code == Operation::Multiply && m_graph.IsConstant(factor.A);
    if (m_graph.IsConstant(a) && isScaled)
        return m_graph.Multiply(m_graph.Multiply(a, factor.A), factor.B);
    return m_graph.Multiply(a, b);
}

std::pair<int, int> Differentiator::FactorsOf(int node) const
{
    const FieldNode& of = m_graph.At(node);
    const bool isProduct = of.Kind == OperandKind::Register && of.Code == Operation::Multiply;
    return isProduct ? std::pair(of.A, of.B) : std::pair(node, m_one);
}

// A common factor is taken out, so that its range counts only once.
int Differentiator::Plus(int a, int b)
{
    const bool minus = m_graph.IsNegated(b);
    const auto [a1, a2] = FactorsOf(a);
    const auto [b1, b2] = FactorsOf(minus ? m_graph.At(b).A : b);
    for (const auto& [common, rest, otherCommon, otherRest] :
         {std::array{a1, a2, b1, b2}, std::array{a1, a2, b2, b1}, std::array{a2, a1, b1, b2},
          std::array{a2, a1, b2, b1}}) {
        if (common != otherCommon || common == m_one)
            continue;
        const int sum = minus ? m_graph.Subtract(rest, otherRest) : m_graph.Add(rest, otherRest);
        return m_graph.At(sum).IsZero ? FieldGraph::kZero : Times(common, sum);
    }
    return m_graph.Add(a, b);
}

int Differentiator::Of(int node)
{
    const std::vector<bool> needed = m_graph.NeededFor(node);
    m_slopes.assign(static_cast<std::size_t>(node) + 1, FieldGraph::kZero);
    for (int at = 0; at <= node; ++at) {
        if (needed[static_cast<std::size_t>(at)])
            m_slopes[static_cast<std::size_t>(at)] = Slope(at);
    }
    return m_slopes.back();
}

int Differentiator::Slope(int node)
{
    const FieldNode of = m_graph.At(node);
    if (of.Kind != OperandKind::Register)
        return m_graph.Constant(of.Kind == OperandKind::Variable && of.Parameter == m_variable);
    const int a = SlopeOf(of.A);
    const int b = SlopeOf(of.B);
    if (of.IsZero || (a == FieldGraph::kZero && b == FieldGraph::kZero))
        return FieldGraph::kZero;
    switch (of.Code) {
    case Operation::Add:
        return Plus(a, b);
    case Operation::Subtract:
        return Plus(a, m_graph.Negate(b));
    case Operation::Multiply:
        return Plus(Times(of.A, b), Times(of.B, a));
    case Operation::Divide:
        return QuotientSlope(node);
    case Operation::HalvesPower:
        return ConstantPowerSlope(node, of.Parameter / 2.0);
    case Operation::BasePower:
        return Times(m_graph.Constant(std::log(m_graph.At(of.B).Value)), Times(node, a));
    case Operation::Power:
        return PowerSlope(node);
    case Operation::Negate:
        return m_graph.Negate(a);
    default:
        return FunctionSlope(node);
    }
}

// A divisor's square keeps the sign where the divisor itself may be of either sign.
int Differentiator::QuotientSlope(int node)
{
    const FieldNode of = m_graph.At(node);
    if (of.A == of.B)
        return FieldGraph::kZero;
    const int above = SlopeOf(of.A);
    const int below = SlopeOf(of.B);
    if (above == FieldGraph::kZero)
        return m_graph.Negate(Over(Times(of.A, below), Square(of.B)));
    return Over(Plus(above, m_graph.Negate(Times(node, below))), of.B);
}

// The exponent of a power that is never negative; 0 of anything else.
double Differentiator::RootExponent(int node) const
{
    const FieldNode& of = m_graph.At(node);
    if (of.Kind != OperandKind::Register)
        return 0;
    if (of.Code == Operation::HalvesPower)
        return of.Parameter % 2 != 0 ? of.Parameter / 2.0 : 0;
    if (of.Code != Operation::Power || !m_graph.IsConstant(of.B))
        return 0;
    const double exponent = m_graph.At(of.B).Value;
    return exponent == std::floor(exponent) ? 0 : exponent;
}

// The power of a power, (x^0.5)^2, has the slope of the power that it is.
int Differentiator::ConstantPowerSlope(int node, double exponent)
{
    const FieldNode of = m_graph.At(node);
    if (exponent == 0)
        return FieldGraph::kZero;
    if (const double root = RootExponent(of.A); root != 0) {
        const int base = m_graph.At(of.A).A;
        const double all = root * exponent;
        const int lower = m_graph.Raise(base, m_graph.Constant(all - 1));
        return Times(m_graph.Constant(all), Times(lower, SlopeOf(base)));
    }
    const int slope = SlopeOf(of.A);
    if (exponent == 0.5)
        return Over(Times(m_graph.Constant(0.5), slope), node);
    const int lower = m_graph.Raise(of.A, m_graph.Constant(exponent - 1));
    return Times(m_graph.Constant(exponent), Times(lower, slope));
}

int Differentiator::PowerSlope(int node)
{
    const FieldNode of = m_graph.At(node);
    if (m_graph.IsConstant(of.B))
        return ConstantPowerSlope(node, m_graph.At(of.B).Value);
    if (m_graph.IsConstant(of.A))
        return FieldGraph::kZero; // 0 raised to something
    const int ofExponent = Times(SlopeOf(of.B), m_graph.Apply(Operation::Logarithm, of.A));
    const int ofBase = Over(Times(of.B, SlopeOf(of.A)), of.A);
    return Times(node, Plus(ofExponent, ofBase));
}

int Differentiator::FunctionSlope(int node)
{
    const FieldNode of = m_graph.At(node);
    const int slope = SlopeOf(of.A);
    switch (of.Code) {
    case Operation::Sine:
        return Times(m_graph.Apply(Operation::Cosine, of.A), slope);
    case Operation::Cosine:
        return m_graph.Negate(Times(m_graph.Apply(Operation::Sine, of.A), slope));
    case Operation::Tangent:
        return Times(OnePlusSquare(node), slope);
    case Operation::Logarithm:
        return Over(slope, of.A);
    case Operation::Absolute:
        return Times(m_graph.Apply(Operation::Sign, of.A), slope);
    case Operation::Sign:
        return FieldGraph::kZero;
    case Operation::Positive:
        return Times(
            Times(m_graph.Constant(0.5), Plus(m_one, m_graph.Apply(Operation::Sign, of.A))), slope);
    case Operation::ArcTangent:
        return Over(slope, OnePlusSquare(of.A));
    default:
        break;
    }
    const int root = m_graph.Raise(OneMinusSquare(of.A), m_graph.Constant(0.5));
    const int arc = Over(slope, root);
    return of.Code == Operation::ArcSine ? arc : m_graph.Negate(arc);
}

} // namespace

FieldSlopes Differentiate(FieldGraph& graph, int node)
{
    return {.AlongX = Differentiator(graph, 0).Of(node),
            .AlongY = Differentiator(graph, 1).Of(node)};
}

} // namespace kelvane
