#include "engine/field.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "engine/field_graph.h"
#include "engine/scalar_math.h"
#include "engine/slot_walker.h"

namespace kelvane {

namespace {

constexpr int kNone = -1;

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

// ---- from nodes to instructions

// An instruction whose operands and result are nodes.
struct Step {
    Operation Code = Operation::Finish;
    int Node = kNone; // kNone: no result
    int A = 0;
    int B = 0;
    int Parameter = 0;
};

// Puts the nodes that are needed into order, and guards the steps that may swallow a failure.
class Scheduler {
public:
    explicit Scheduler(FieldGraph& graph)
        : m_graph(graph)
    {
    }

    // All steps to a node that are still missing, and the end of an output.
    void Output(int node, FieldOutput output);

    std::vector<Step> Steps;

private:
    void Calculate(int node);
    void Guard(int node);
    void Check(int node);
    bool Mark(std::vector<bool>& flags, int node);

    FieldGraph& m_graph;
    std::vector<bool> m_done;    // by node: has its step
    std::vector<bool> m_checked; // by node: has its Check
};

// Sets a node's flag; whether it was not set before.
bool Scheduler::Mark(std::vector<bool>& flags, int node)
{
    const auto index = static_cast<std::size_t>(node);
    if (index >= flags.size())
        flags.resize(index + 1);
    if (flags[index])
        return false;
    flags[index] = true;
    return true;
}

void Scheduler::Output(int node, FieldOutput output)
{
    const std::vector<bool> needed = m_graph.NeededFor(node);
    for (int at = 0; at <= node; ++at) {
        if (!needed[static_cast<std::size_t>(at)] || m_graph.At(at).Kind != OperandKind::Register)
            continue;
        if (output == FieldOutput::Value)
            Guard(at);
        Calculate(at);
    }
    Steps.push_back({Operation::Finish, kNone, node, node, static_cast<int>(output)});
}

void Scheduler::Calculate(int node)
{
    if (!Mark(m_done, node))
        return;
    const FieldNode& of = m_graph.At(node);
    Steps.push_back({of.Code, node, of.A, of.B, of.Parameter});
}

void Scheduler::Check(int node)
{
    if (m_graph.At(node).Kind == OperandKind::Register && Mark(m_checked, node))
        Steps.push_back({Operation::Check, kNone, node, node, 0});
}

// Before an operation that may give a finite result for an operand that is not. Of a negative
// number only constant powers exist: its square root fails too.
void Scheduler::Guard(int node)
{
    const FieldNode of = m_graph.At(node);
    switch (of.Code) {
    case Operation::Divide:
        Check(of.B);
        break;
    case Operation::HalvesPower:
        if (of.Parameter <= 0)
            Check(of.A);
        break;
    case Operation::BasePower:
    case Operation::ArcTangent:
    case Operation::Positive:
        Check(of.A);
        break;
    case Operation::Power:
        Check(of.A);
        Check(of.B);
        if (!m_graph.IsConstant(of.A) && !m_graph.IsConstant(of.B)) {
            const int root = m_graph.Raise(of.A, m_graph.Constant(0.5));
            Calculate(root);
            Check(root);
        }
        break;
    default:
        break;
    }
}

// Assigns registers and constants to a list of steps.
class Assembler {
public:
    Assembler(const FieldGraph& graph, const std::vector<Step>& steps)
        : m_graph(graph)
        , m_steps(steps)
        , m_operands(static_cast<std::size_t>(graph.Size()))
        , m_lastUse(static_cast<std::size_t>(graph.Size()), kNone)
        , m_isPlaced(static_cast<std::size_t>(graph.Size()))
    {
    }

    // False when there are too many registers or constants.
    bool Assemble(Program& program);

private:
    bool FindPlace(int node, Program& program);
    bool Append(int step, Program& program);
    static int AddBase(double base, Program& program);
    static ConstantLanes LanesOf(double value);

    const FieldGraph& m_graph;
    const std::vector<Step>& m_steps;
    std::vector<Operand> m_operands; // by node: where it is
    std::vector<int> m_lastUse;      // by node: the last step that reads it
    std::vector<bool> m_isPlaced;    // by node: a constant or variable with its operand
    std::vector<int> m_free;         // registers
};

ConstantLanes Assembler::LanesOf(double value)
{
    ConstantLanes lanes;
    for (std::size_t at = 0; at < lanes.Bytes.size(); at += sizeof value)
        std::memcpy(&lanes.Bytes[at], &value, sizeof value);
    return lanes;
}

// Where a variable or constant is read from.
bool Assembler::FindPlace(int node, Program& program)
{
    const FieldNode& of = m_graph.At(node);
    const auto index = static_cast<std::size_t>(node);
    if (of.Kind == OperandKind::Register || m_isPlaced[index])
        return true;
    const bool isConstant = of.Kind == OperandKind::Constant;
    const std::size_t place =
        isConstant ? program.Constants.size() : static_cast<std::size_t>(of.Parameter);
    if (place > std::numeric_limits<std::uint16_t>::max())
        return false;
    if (isConstant)
        program.Constants.push_back(LanesOf(of.Value));
    m_operands[index] = {of.Kind, ElementType::Double, static_cast<std::uint16_t>(place)};
    m_isPlaced[index] = true;
    return true;
}

int Assembler::AddBase(double base, Program& program)
{
    const Log2Value log2 = Log2Of(base);
    program.Bases.push_back({base, log2.High, log2.Low});
    return static_cast<int>(program.Bases.size()) - 1;
}

bool Assembler::Append(int step, Program& program)
{
    const Step& now = m_steps[static_cast<std::size_t>(step)];
    const bool hasBase = now.Code == Operation::BasePower;
    const int second = hasBase ? now.A : now.B;
    if (!FindPlace(now.A, program) || !FindPlace(second, program))
        return false;
    Instruction instruction{.Code = now.Code,
                            .A = m_operands[static_cast<std::size_t>(now.A)],
                            .B = m_operands[static_cast<std::size_t>(second)]};
    const auto release = [&](int node) {
        if (m_graph.At(node).Kind == OperandKind::Register &&
            m_lastUse[static_cast<std::size_t>(node)] == step)
            m_free.push_back(m_operands[static_cast<std::size_t>(node)].Index);
    };
    release(now.A);
    if (second != now.A)
        release(second);
    if (now.Node != kNone) {
        if (m_free.empty()) {
            if (program.Registers == kMaxFieldRegisters)
                return false;
            m_free.push_back(program.Registers++);
        }
        instruction.Result = static_cast<std::uint16_t>(m_free.back());
        m_free.pop_back();
        m_operands[static_cast<std::size_t>(now.Node)] = {OperandKind::Register,
                                                          ElementType::Double, instruction.Result};
    }
    const int parameter = hasBase ? AddBase(m_graph.At(now.B).Value, program) : now.Parameter;
    instruction.Parameter = static_cast<std::int16_t>(parameter);
    program.MayFailInside = program.MayFailInside || now.Code == Operation::Check;
    program.Code.push_back(instruction);
    return true;
}

bool Assembler::Assemble(Program& program)
{
    for (int step = 0; step < static_cast<int>(m_steps.size()); ++step) {
        const Step& now = m_steps[static_cast<std::size_t>(step)];
        m_lastUse[static_cast<std::size_t>(now.A)] = step;
        m_lastUse[static_cast<std::size_t>(now.B)] = step;
    }
    for (int step = 0; step < static_cast<int>(m_steps.size()); ++step) {
        if (!Append(step, program))
            return false;
    }
    return true;
}

// A field that has no value anywhere.
Field NowhereField()
{
    FieldGraph graph;
    const int one = graph.Constant(1);
    Scheduler scheduler(graph);
    scheduler.Output(graph.Divide(one, FieldGraph::kZero), FieldOutput::Value);
    Field field;
    field.ValueLength = scheduler.Steps.size();
    scheduler.Output(FieldGraph::kZero, FieldOutput::AlongX);
    scheduler.Output(FieldGraph::kZero, FieldOutput::AlongY);
    Assembler(graph, scheduler.Steps).Assemble(field.Code);
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

    Field field;
    const FieldSlopes slopes = Differentiate(graph, value);
    Scheduler scheduler(graph);
    scheduler.Output(value, FieldOutput::Value);
    field.ValueLength = scheduler.Steps.size();
    scheduler.Output(slopes.AlongX, FieldOutput::AlongX);
    scheduler.Output(slopes.AlongY, FieldOutput::AlongY);
    if (!Assembler(graph, scheduler.Steps).Assemble(field.Code))
        return {};
    field.ConstantAlongX = ConstantSlope(graph, value, 0, slopes.AlongX);
    field.ConstantAlongY = ConstantSlope(graph, value, 1, slopes.AlongY);
    return field;
}

} // namespace kelvane
