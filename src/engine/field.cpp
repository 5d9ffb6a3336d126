#include "engine/field.h"

#include <array>
#include <cmath>

#include "engine/field_program.h"
#include "engine/slot_walker.h"

namespace kelvane {

namespace {

Operation OperationOf(Token function)
{
    constexpr std::array kFunctions{Operation::Sine,      Operation::Cosine,    Operation::Tangent,
                                    Operation::Logarithm, Operation::Absolute,  Operation::ArcSine,
                                    Operation::ArcCosine, Operation::ArcTangent};
    return kFunctions[static_cast<std::size_t>(function) - static_cast<std::size_t>(Token::Sin)];
}

// Reads an equation into a graph.
class Reader {
public:
    struct Value {
        int Node = FieldGraph::kZero;
    };

    explicit Reader(FieldGraph& graph)
        : m_graph(graph)
    {
    }

    // A step failed whatever the variables are.
    bool HasFailed() const { return m_failed; }

    Value Operand(const Equation& equation, int position);
    Value Juxtapose(Value term, Value factor);
    Value Multiply(Value term, Value factor)
    {
        return Checked(m_graph.Multiply(term.Node, factor.Node), term, factor);
    }
    Value Divide(Value term, Value factor)
    {
        return Checked(m_graph.Divide(term.Node, factor.Node), term, factor);
    }
    Value Raise(Value term, Value factor);
    Value Apply(Token function, Value argument)
    {
        return Checked(m_graph.Apply(OperationOf(function), argument.Node), argument, argument);
    }
    Value PushTerm(Value sum, Value term, Token sign)
    {
        const bool minus = sign == Token::Minus;
        return Checked(minus ? m_graph.Subtract(sum.Node, term.Node)
                             : m_graph.Add(sum.Node, term.Node),
                       sum, term);
    }
    bool GoOn(Value, Value) const { return !m_failed; }

private:
    // Constants whose result is no constant have none.
    Value Checked(int node, Value a, Value b)
    {
        const bool wasConstant = m_graph.IsConstant(a.Node) && m_graph.IsConstant(b.Node);
        m_failed = m_failed || (wasConstant && !m_graph.IsConstant(node));
        return {node};
    }

    FieldGraph& m_graph;
    bool m_failed = false;
};

Reader::Value Reader::Operand(const Equation& equation, int position)
{
    switch (equation.Tok(position)) {
    case Token::X:
        return {m_graph.Variable(0)};
    case Token::Y:
        return {m_graph.Variable(1)};
    case Token::Z:
        return {};
    default: {
        const double number = equation.Num(position);
        m_failed = m_failed || !std::isfinite(number);
        return {m_failed ? FieldGraph::kZero : m_graph.Constant(number)};
    }
    }
}

// What is 0 wherever it has a value gives way to the factor, where it has one.
Reader::Value Reader::Juxtapose(Value term, Value factor)
{
    if (m_graph.At(term.Node).IsZero)
        return Checked(m_graph.Add(term.Node, factor.Node), term, factor);
    return Multiply(term, factor);
}

Reader::Value Reader::Raise(Value term, Value factor)
{
    const bool isNegative = m_graph.IsConstant(term.Node) && m_graph.At(term.Node).Value < 0;
    m_failed = m_failed || (isNegative && !m_graph.IsConstant(factor.Node));
    return Checked(m_graph.Raise(term.Node, factor.Node), term, factor);
}

// ---- fields

// A field that has no value anywhere.
Field NowhereField()
{
    FieldGraph graph;
    Field field;
    Assemble(graph, {graph.Divide(graph.Constant(1), FieldGraph::kZero), {}}, field);
    field.ConstantAlongX = field.ConstantAlongY = 0;
    return field;
}

// A derivative that is the same number everywhere, f being defined whatever the variable is.
std::optional<double> ConstantSlope(const FieldGraph& graph, int value, int variable, int slope)
{
    if (!graph.IsConstant(slope) || graph.MayFailBy(variable, value))
        return std::nullopt;
    return graph.At(slope).Value;
}

Field FieldOf(FieldGraph& graph, int value)
{
    Field field;
    const FieldSlopes slopes = Differentiate(graph, value);
    if (!Assemble(graph, {value, slopes}, field))
        return {};
    field.ConstantAlongX = ConstantSlope(graph, value, 0, slopes.AlongX);
    field.ConstantAlongY = ConstantSlope(graph, value, 1, slopes.AlongY);
    return field;
}

} // namespace

Field CompileField(const Equation& equation)
{
    FieldGraph graph;
    Reader reader(graph);
    int position = 1;
    const Reader::Value left = WalkSlots(reader, position, equation);
    position = EquationsStart(equation);
    const Reader::Value right = WalkSlots(reader, position, equation);
    const int value = reader.PushTerm(left, right, Token::Minus).Node;
    if (reader.HasFailed())
        return NowhereField();
    return FieldOf(graph, value);
}

} // namespace kelvane
