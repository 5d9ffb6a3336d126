#include "engine/field_graph.h"

#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include "engine/scalar_math.h"

namespace kelvane {

namespace {

double ValueOf(Operation code, double a, double b)
{
    switch (code) {
    case Operation::Add:
        return a + b;
    case Operation::Subtract:
        return a - b;
    case Operation::Multiply:
        return a * b;
    case Operation::Divide:
        return b == 0 ? std::numeric_limits<double>::quiet_NaN() : a / b;
    case Operation::Power:
        return Power(a, b);
    case Operation::Sine:
        return Sine(a);
    case Operation::Cosine:
        return Cosine(a);
    case Operation::Tangent:
        return Tangent(a);
    case Operation::Logarithm:
        return Logarithm(a);
    case Operation::Absolute:
        return std::fabs(a);
    case Operation::ArcSine:
        return ArcSine(a);
    case Operation::ArcCosine:
        return ArcCosine(a);
    case Operation::ArcTangent:
        return ArcTangent(a);
    case Operation::Negate:
        return -a;
    case Operation::Positive:
        return a > 0 ? a : 0;
    default:
        return static_cast<double>((a > 0) - (a < 0)); // Sign
    }
}

// Functions that are 0 at 0.
bool KeepsZero(Operation function)
{
    return function != Operation::Cosine && function != Operation::ArcCosine &&
           function != Operation::Logarithm;
}

// Whether an operation may fail, for which reason ever but overflow, because of its operand A, and
// because of B.
std::pair<bool, bool> MayFail(const FieldNode& node)
{
    switch (node.Code) {
    case Operation::Divide:
        return {false, true};
    case Operation::HalvesPower:
        return {node.Parameter < 0 || node.Parameter % 2 != 0, false};
    case Operation::Power:
        return {true, true};
    case Operation::Tangent:
    case Operation::Logarithm:
    case Operation::ArcSine:
    case Operation::ArcCosine:
        return {true, false};
    default:
        return {false, false};
    }
}

} // namespace

// ---- nodes

int FieldGraph::Node(const FieldNode& node)
{
    const Key key{node.Kind, node.Code,      node.A,
                  node.B,    node.Parameter, std::bit_cast<std::uint64_t>(node.Value)};
    const auto [known, isNew] = m_known.try_emplace(key, Size());
    if (isNew)
        m_nodes.push_back(node);
    return known->second;
}

int FieldGraph::Constant(double value)
{
    return Node({.Kind = OperandKind::Constant, .Value = value + 0.0, .IsZero = value == 0});
}

int FieldGraph::Variable(int index)
{
    return Node({.Kind = OperandKind::Variable, .Parameter = index});
}

int FieldGraph::Calculated(Operation code, int a, int b, bool isZero)
{
    if (IsConstant(a) && IsConstant(b)) {
        const double value = ValueOf(code, At(a).Value, At(b).Value);
        if (std::isfinite(value))
            return Constant(value);
    }
    return Node({.Code = code, .A = a, .B = b, .IsZero = isZero});
}

// ---- arithmetic

int FieldGraph::Doubled(int a)
{
    return Multiply(Constant(2), a);
}

// A number plus or minus its own size is exactly twice one part of it.
int FieldGraph::Add(int a, int b)
{
    if (a == kZero || b == kZero)
        return a == kZero ? b : a;
    if (IsNegated(b) && !IsConstant(a))
        return Subtract(a, At(b).A);
    if (IsNegated(a) && !IsConstant(b))
        return Subtract(b, At(a).A);
    if (a == b)
        return Doubled(a);
    if (a > b)
        std::swap(a, b);
    if (IsSizeOf(b, a))
        return Doubled(Apply(Operation::Positive, a));
    return Calculated(Operation::Add, a, b, At(a).IsZero && At(b).IsZero);
}

int FieldGraph::Subtract(int a, int b)
{
    if (b == kZero)
        return a;
    if (a == kZero)
        return Negate(b);
    if (IsNegated(b))
        return Add(a, At(b).A);
    if (IsSizeOf(b, a))
        return Negate(Doubled(Apply(Operation::Positive, Negate(a))));
    if (IsSizeOf(a, b))
        return Doubled(Apply(Operation::Positive, Negate(b)));
    return Calculated(Operation::Subtract, a, b, a == b || (At(a).IsZero && At(b).IsZero));
}

int FieldGraph::Negate(int a)
{
    if (IsNegated(a))
        return At(a).A;
    if (Is(a, Operation::Subtract) && At(a).A != At(a).B)
        return Subtract(At(a).B, At(a).A);
    return Calculated(Operation::Negate, a, a, At(a).IsZero);
}

// The product of two powers of the same, as one power; kZero where it is none. Two square roots
// must stay, since their product fails for negative numbers.
int FieldGraph::MergedPowers(int a, int b)
{
    const auto split = [this](int node) {
        const bool isPower = Is(node, Operation::HalvesPower) && At(node).Parameter > 0;
        return isPower ? std::pair(At(node).A, At(node).Parameter) : std::pair(node, 2);
    };
    const auto [base, halves] = split(a);
    const auto [otherBase, otherHalves] = split(b);
    const bool fits = halves + otherHalves <= 2 * kMaxChainExponent;
    if (base == otherBase && fits && (halves % 2 == 0 || otherHalves % 2 == 0))
        return Halves(base, halves + otherHalves);
    return a == b ? Halves(a, 4) : kZero;
}

int FieldGraph::Multiply(int a, int b)
{
    if (IsConstant(b))
        std::swap(a, b);
    if (IsConstant(a, 1))
        return b;
    if (IsConstant(a, -1))
        return Negate(b);
    if (IsNegated(a))
        return Negate(Multiply(At(a).A, b));
    if (IsNegated(b))
        return IsConstant(a) ? Multiply(Constant(-At(a).Value), At(b).A)
                             : Negate(Multiply(a, At(b).A));
    const int power = IsConstant(a) ? kZero : MergedPowers(a, b);
    if (power != kZero)
        return power;
    if (a > b && !IsConstant(a))
        std::swap(a, b);
    return Calculated(Operation::Multiply, a, b, At(a).IsZero || At(b).IsZero);
}

int FieldGraph::Divide(int a, int b)
{
    if (IsConstant(b, 1))
        return a;
    if (IsConstant(b, -1))
        return Negate(a);
    if (IsNegated(a))
        return Negate(Divide(At(a).A, b));
    if (IsNegated(b))
        return Negate(Divide(a, At(b).A));
    if (IsSizeOf(a, b))
        return Multiply(Apply(Operation::Sign, b), Divide(b, b));
    if (IsSizeOf(b, a))
        return Multiply(Apply(Operation::Sign, a), Divide(a, a));
    return Calculated(Operation::Divide, a, b, At(a).IsZero);
}

// ---- what is known

std::vector<bool> FieldGraph::NeededFor(int node) const
{
    std::vector<bool> needed(static_cast<std::size_t>(node) + 1);
    needed.back() = true;
    for (int at = node; at >= 0; --at) {
        if (needed[static_cast<std::size_t>(at)] && At(at).Kind == OperandKind::Register) {
            needed[static_cast<std::size_t>(At(at).A)] = true;
            needed[static_cast<std::size_t>(At(at).B)] = true;
        }
    }
    return needed;
}

bool FieldGraph::MayFailBy(int variable, int node) const
{
    const std::vector<bool> needed = NeededFor(node);
    std::vector<bool> varies(needed.size());
    for (int at = 0; at <= node; ++at) {
        const FieldNode& of = At(at);
        const auto index = static_cast<std::size_t>(at);
        if (of.Kind == OperandKind::Variable)
            varies[index] = of.Parameter == variable;
        if (of.Kind != OperandKind::Register)
            continue;
        const bool a = varies[static_cast<std::size_t>(of.A)];
        const bool b = varies[static_cast<std::size_t>(of.B)];
        varies[index] = a || b;
        const auto [byA, byB] = MayFail(of);
        if (needed[index] && ((a && byA) || (b && byB)))
            return true;
    }
    return false;
}

// ---- powers and functions

// An even power has no negative values, so that a power of it is one power of the size.
int FieldGraph::Halves(int a, int halves)
{
    if (halves == 2)
        return a;
    const bool isEven = halves % 4 == 0;
    if (isEven && (IsNegated(a) || Is(a, Operation::Absolute)))
        a = At(a).A;
    const int inner = Is(a, Operation::HalvesPower) ? At(a).Parameter : 0;
    const int all = inner * halves / 2;
    if (inner > 0 && inner % 4 == 0 && halves > 0 && all <= 2 * kMaxChainExponent)
        return Halves(Apply(Operation::Absolute, At(a).A), all);
    return Node({.Code = Operation::HalvesPower,
                 .A = a,
                 .B = a,
                 .Parameter = halves,
                 .IsZero = halves > 0 && At(a).IsZero});
}

int FieldGraph::Raise(int a, int b)
{
    if (IsConstant(a) && IsConstant(b))
        return Calculated(Operation::Power, a, b, false);
    if (IsConstant(b) && IsChainExponent(At(b).Value))
        return Halves(a, static_cast<int>(2 * At(b).Value));
    if (IsConstant(a) && At(a).Value > 0)
        return Node({.Code = Operation::BasePower, .A = b, .B = a});
    return Node({.Code = Operation::Power, .A = a, .B = b});
}

int FieldGraph::Apply(Operation function, int a)
{
    const bool isEven = function == Operation::Cosine || function == Operation::Absolute;
    if (isEven && IsNegated(a))
        a = At(a).A;
    return Calculated(function, a, a, KeepsZero(function) && At(a).IsZero);
}

} // namespace kelvane
