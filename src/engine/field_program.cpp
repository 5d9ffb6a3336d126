#include "engine/field_program.h"

#include <cstring>
#include <limits>
#include <vector>

#include "engine/scalar_math.h"

namespace kelvane {

namespace {

constexpr int kNone = -1;

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

} // namespace

bool Assemble(FieldGraph& graph, const FieldNodes& nodes, Field& field)
{
    Scheduler scheduler(graph);
    scheduler.Output(nodes.Value, FieldOutput::Value);
    field.ValueLength = scheduler.Steps.size();
    scheduler.Output(nodes.Slopes.AlongX, FieldOutput::AlongX);
    scheduler.Output(nodes.Slopes.AlongY, FieldOutput::AlongY);
    return Assembler(graph, scheduler.Steps).Assemble(field.Code);
}

} // namespace kelvane
