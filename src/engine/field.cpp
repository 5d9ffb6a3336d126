#include "engine/field.h"

#include <array>
#include <cmath>
#include <memory>

#include "engine/field_program.h"
#include "engine/field_runner.h"
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

// ---- identities

// Steps that differ on either side of a place, so that a number of points says nothing.
bool HasPieces(const FieldGraph& graph, int node)
{
    const std::vector<bool> needed = graph.NeededFor(node);
    for (int at = 0; at <= node; ++at) {
        const FieldNode& of = graph.At(at);
        if (!needed[static_cast<std::size_t>(at)] || of.Kind != OperandKind::Register)
            continue;
        if (of.Code == Operation::Absolute || of.Code == Operation::Positive ||
            of.Code == Operation::Sign)
            return true;
    }
    return false;
}

// Points of all directions and magnitudes, half of the magnitudes near 1.
void SpreadPoints(FieldBoxes& boxes)
{
    const auto place = [](int at, double step) {
        const double part = at * step - std::floor(at * step);
        const double magnitude = at % 2 == 0 ? 2 * part - 1 : 10 * part - 4;
        return std::pow(10.0, magnitude);
    };
    for (int at = 0; at < kBlockPoints; ++at) {
        const auto index = static_cast<std::size_t>(at);
        const double x = (at & 4) != 0 ? -place(at, 0.6180339887) : place(at, 0.6180339887);
        const double y = (at & 2) != 0 ? -place(at, 0.7548776662) : place(at, 0.7548776662);
        boxes.X.Low.At[index] = boxes.X.High.At[index] = x;
        boxes.Y.Low.At[index] = boxes.Y.High.At[index] = y;
    }
}

// Whether nothing but rounding keeps f from being 0 wherever it has a value, as in
// sin(x)^2+cos(x)^2=1: at none of many points is it proven to be anything else.
bool IsIdentity(const Field& field)
{
    constexpr double kNarrow = 1e-9; // a range that tells something
    constexpr int kEnough = 16;
    struct Room {
        FieldBoxes Boxes;
        FieldRanges Ranges;
        FieldRunner Runner;
    };
    const auto room = std::make_unique<Room>();
    SpreadPoints(room->Boxes);
    room->Runner.OverBoxes(field, room->Boxes, kBlockPoints, FieldPart::Value, room->Ranges);
    int telling = 0;
    for (std::size_t at = 0; at < kBlockPoints; ++at) {
        const double low = room->Ranges.F.Low.At[at];
        const double high = room->Ranges.F.High.At[at];
        if ((room->Ranges.Marks[at] & kNowhereDefined) != 0)
            continue;
        if (low > 0 || high < 0)
            return false;
        telling += low < 0 && high > 0 && high - low < kNarrow ? 1 : 0;
    }
    return telling >= kEnough;
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
    Field field = FieldOf(graph, value);
    if (!field.IsCompiled() || HasPieces(graph, value) || !IsIdentity(field))
        return field;
    return FieldOf(graph, graph.Subtract(value, value));
}

} // namespace kelvane
