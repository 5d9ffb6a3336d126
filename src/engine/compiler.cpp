#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

#include "engine/arithmetic.h"
#include "engine/program.h"
#include "engine/scalar_math.h"
#include "engine/slot_walker.h"

namespace kelvane {

namespace {

constexpr int kNone = -1;

// One step of the calculation, before registers are assigned: nodes refer to earlier ones, and
// each is written once.
struct Node {
    Operation Code = Operation::Finish;
    ElementType Type = ElementType::Single;
    std::optional<Operand> Fixed; // a variable or a constant: nothing to calculate
    int A = kNone;
    int B = kNone;
    std::int16_t Parameter = 0;
};

// Which width the plain evaluator's number has; "Either" differs from point to point.
enum class Precision : std::uint8_t { Single, Double, Either };

// What is known of a number while the equation is read.
struct Symbol {
    std::optional<Number> Constant = Number{}; // its value, where it is the same at every point
    Precision Width = Precision::Single;
    int Node = kNone;          // kNone while it is a constant
    int Wide = kNone;          // mask node of an Either: the points at which it is double
    bool NarrowIsZero = false; // an Either that is single only at points where it is 0

    // Neither always double nor 0 where single: what the rounding of singles can change.
    bool MayRound() const { return Width != Precision::Double && !NarrowIsZero; }
};

ElementType OwnType(const Symbol& symbol)
{
    return symbol.Width == Precision::Single ? ElementType::Single : ElementType::Double;
}

Operation OperationOf(Token function)
{
    switch (function) {
    case Token::Sin:
        return Operation::Sine;
    case Token::Cos:
        return Operation::Cosine;
    case Token::Tan:
        return Operation::Tangent;
    case Token::Log:
        return Operation::Logarithm;
    case Token::Asin:
        return Operation::ArcSine;
    case Token::Acos:
        return Operation::ArcCosine;
    case Token::Atan:
        return Operation::ArcTangent;
    default:
        return Operation::Absolute;
    }
}

// Reads an equation into nodes. The rules of rounding follow from three facts: two singles give a
// single; a number that is 0 and single gives a result that is a single anyway; and a term worth 0
// leaves the sum's width alone.
class Translator {
public:
    using Value = Symbol;

    std::vector<Node> Nodes;
    std::vector<ConstantLanes> Constants;
    std::vector<PowerBase> Bases;

    Value Operand(const Equation& equation, int position);
    Value Juxtapose(Value term, Value factor);
    Value Multiply(Value term, Value factor);
    Value Divide(Value term, Value factor);
    Value Raise(Value term, Value factor);
    Value Apply(Token function, Value argument);
    Value PushTerm(Value sum, Value term, Token sign);
    bool GoOn(const Value& term, const Value& sum)
    {
        m_failed = m_failed || !IsFinite(term) || !IsFinite(sum);
        return !m_failed;
    }

    // The last node: the outcome.
    void Finish(const Value& result);

private:
    static bool IsFinite(const Value& value)
    {
        return !value.Constant || std::isfinite(value.Constant->Value);
    }
    static bool IsZero(const Value& value) { return value.Constant && value.Constant->Value == 0; }
    static Value Folded(Number number);

    int Emit(Operation code, ElementType type, int a, int b = kNone, int parameter = 0);
    int ConstantNode(double value, ElementType type);
    int NodeOf(const Value& value, ElementType type);
    int ChainNode(const Value& base, const Value& exponent);
    int PowerNode(const Value& base, const Value& exponent);
    void Check(const Value& value);

    int NonZero(const Value& value);
    int Both(int maskA, int maskB);
    int Any(int maskA, int maskB);
    int WideWhereNotZero(const Value& term);

    int ArithmeticNode(Operation code, const Value& a, const Value& b);
    Value Combined(int node, const Value& a, const Value& b);
    Value Rounded(Value result, const Value& a, const Value& b);

    std::vector<bool> m_checked; // by node
    bool m_failed = false;       // at every point
};

// ---- nodes

int Translator::Emit(Operation code, ElementType type, int a, int b, int parameter)
{
    Nodes.push_back({code, type, std::nullopt, a, b, static_cast<std::int16_t>(parameter)});
    return static_cast<int>(Nodes.size()) - 1;
}

int Translator::ConstantNode(double value, ElementType type)
{
    ConstantLanes lanes;
    const auto fill = [&lanes](auto element) {
        for (std::size_t at = 0; at < lanes.Bytes.size(); at += sizeof element)
            std::memcpy(&lanes.Bytes[at], &element, sizeof element);
    };
    if (type == ElementType::Single)
        fill(static_cast<float>(value));
    else
        fill(value);
    const int node = Emit(Operation::Finish, type, kNone);
    Nodes.back().Fixed = {OperandKind::Constant, type,
                          static_cast<std::uint16_t>(Constants.size())};
    Constants.push_back(lanes);
    return node;
}

// The node that holds a value; a constant is made as wide as asked for.
int Translator::NodeOf(const Value& value, ElementType type)
{
    return value.Constant ? ConstantNode(value.Constant->Value, type) : value.Node;
}

// Before an operation that may give a finite result for something that is not.
void Translator::Check(const Value& value)
{
    if (value.Constant)
        return;
    m_checked.resize(Nodes.size());
    if (m_checked[static_cast<std::size_t>(value.Node)])
        return;
    m_checked[static_cast<std::size_t>(value.Node)] = true;
    Emit(Operation::Check, ElementType::Double, value.Node);
}

void Translator::Finish(const Value& result)
{
    constexpr double kFailed = std::numeric_limits<double>::quiet_NaN();
    const int node =
        m_failed ? ConstantNode(kFailed, ElementType::Double) : NodeOf(result, ElementType::Double);
    Emit(Operation::Finish, ElementType::Double, node);
}

// ---- masks; kNone stands for "at no point"

int Translator::NonZero(const Value& value)
{
    return Emit(Operation::NonZero, ElementType::Mask, value.Node);
}

int Translator::Both(int maskA, int maskB)
{
    return maskA == kNone || maskB == kNone ? kNone
                                            : Emit(Operation::And, ElementType::Mask, maskA, maskB);
}

int Translator::Any(int maskA, int maskB)
{
    if (maskA == kNone || maskB == kNone)
        return maskA == kNone ? maskB : maskA;
    return Emit(Operation::Or, ElementType::Mask, maskA, maskB);
}

// Where a term that is no constant and not single is double and not 0.
int Translator::WideWhereNotZero(const Value& term)
{
    const int nonZero = NonZero(term);
    return term.Width == Precision::Double ? nonZero : Both(term.Wide, nonZero);
}

// ---- numbers

Symbol Translator::Folded(Number number)
{
    Symbol symbol;
    symbol.Constant = number;
    symbol.Width = number.Single ? Precision::Single : Precision::Double;
    symbol.NarrowIsZero = number.Single && number.Value == 0;
    return symbol;
}

// Rounds a result, whose width and node are set, to single where it is single.
Symbol Translator::Rounded(Value result, const Value& a, const Value& b)
{
    result.Constant.reset();
    const ElementType type = Nodes[static_cast<std::size_t>(result.Node)].Type;
    if (result.Width == Precision::Single && type == ElementType::Double)
        result.Node = Emit(Operation::Narrow, ElementType::Single, result.Node);
    if (result.Width == Precision::Either && a.MayRound() && b.MayRound())
        result.Node = Emit(Operation::RoundWhere, ElementType::Double, result.Node, result.Wide);
    return result;
}

// The result of an operation that is double where one of its operands is.
Symbol Translator::Combined(int node, const Value& a, const Value& b)
{
    Value result;
    result.Node = node;
    if (a.Width == Precision::Double || b.Width == Precision::Double)
        result.Width = Precision::Double;
    else if (a.Width == Precision::Either || b.Width == Precision::Either)
        result.Width = Precision::Either;
    if (result.Width == Precision::Either)
        result.Wide = Any(a.Wide, b.Wide);
    return Rounded(result, a, b);
}

int Translator::ArithmeticNode(Operation code, const Value& a, const Value& b)
{
    const bool single = a.Width == Precision::Single && b.Width == Precision::Single;
    const ElementType type = single ? ElementType::Single : ElementType::Double;
    const int left = NodeOf(a, single || a.Constant ? type : OwnType(a));
    const int right = NodeOf(b, single || b.Constant ? type : OwnType(b));
    return Emit(code, type, left, right);
}

Symbol Translator::Operand(const Equation& equation, int position)
{
    const Token token = equation.Tok(position);
    if (token == Token::Blank)
        return Folded({equation.Num(position), true});
    const int index = token == Token::X ? 0 : token == Token::Y ? 1 : 2;
    Value variable;
    variable.Constant.reset();
    variable.Node = Emit(Operation::Finish, ElementType::Single, kNone);
    Nodes.back().Fixed = {OperandKind::Variable, ElementType::Single,
                          static_cast<std::uint16_t>(index)};
    return variable;
}

Symbol Translator::Multiply(Value term, Value factor)
{
    if (term.Constant && factor.Constant)
        return Folded(kelvane::Multiply(*term.Constant, *factor.Constant));
    Value result = Combined(ArithmeticNode(Operation::Multiply, term, factor), term, factor);
    result.NarrowIsZero = term.NarrowIsZero || factor.NarrowIsZero;
    return result;
}

Symbol Translator::Divide(Value term, Value factor)
{
    if (term.Constant && factor.Constant)
        return Folded(kelvane::Divide(*term.Constant, *factor.Constant));
    Check(factor);
    Value result = Combined(ArithmeticNode(Operation::Divide, term, factor), term, factor);
    result.NarrowIsZero = term.NarrowIsZero;
    return result;
}

Symbol Translator::Juxtapose(Value term, Value factor)
{
    if (IsZero(term))
        return factor;
    if (term.Constant)
        return Multiply(term, factor);
    Value result;
    result.Node = ArithmeticNode(Operation::Juxtapose, term, factor);
    result.Width = factor.Width;
    if (factor.Width != Precision::Double && term.Width != Precision::Single) {
        result.Width = Precision::Either;
        result.Wide = Any(factor.Wide, WideWhereNotZero(term));
    } else {
        result.Wide = factor.Wide;
    }
    result.NarrowIsZero = factor.NarrowIsZero;
    return Rounded(result, term, factor);
}

Symbol Translator::PushTerm(Value sum, Value term, Token sign)
{
    if (IsZero(term))
        return sum;
    const bool minus = sign == Token::Minus;
    if (sum.Constant && term.Constant)
        return Folded(Add(*sum.Constant, minus ? Negate(*term.Constant) : *term.Constant));
    Value result;
    if (IsZero(sum) && sum.Width == Precision::Single)
        result.Node = minus ? Emit(Operation::Negate, OwnType(term), term.Node) : term.Node;
    else
        result.Node = ArithmeticNode(minus ? Operation::Subtract : Operation::Add, sum, term);
    result.Width = sum.Width;
    result.Wide = sum.Wide;
    if (sum.Width != Precision::Double && term.Width != Precision::Single) {
        const bool alwaysWide = term.Constant.has_value();
        result.Width = alwaysWide ? Precision::Double : Precision::Either;
        if (!alwaysWide)
            result.Wide = Any(sum.Wide, WideWhereNotZero(term));
    }
    result.NarrowIsZero =
        sum.NarrowIsZero && (term.NarrowIsZero || term.Width == Precision::Double);
    return Rounded(result, sum, term);
}

// ---- powers and functions

// A power that is calculated by a few multiplications and perhaps a square root.
int Translator::ChainNode(const Value& base, const Value& exponent)
{
    const auto halves = static_cast<int>(2 * exponent.Constant->Value);
    const bool staysSingle = exponent.Width == Precision::Single;
    if (halves == 2 && staysSingle)
        return base.Node;
    if (halves == 4 && staysSingle)
        return Emit(Operation::Multiply, OwnType(base), base.Node, base.Node);
    if (halves <= 0)
        Check(base);
    const ElementType type = staysSingle ? OwnType(base) : ElementType::Double;
    return Emit(Operation::HalvesPower, type, base.Node, kNone, halves);
}

int Translator::PowerNode(const Value& base, const Value& exponent)
{
    if (exponent.Constant && IsChainExponent(exponent.Constant->Value))
        return ChainNode(base, exponent);
    Check(base);
    Check(exponent);
    if (base.Constant && base.Constant->Value > 0) {
        const double value = base.Constant->Value;
        const auto parts = Log2Of(value);
        Bases.push_back({value, parts.High, parts.Low});
        return Emit(Operation::BasePower, ElementType::Double, exponent.Node, kNone,
                    static_cast<int>(Bases.size()) - 1);
    }
    const int left = NodeOf(base, OwnType(base));
    return Emit(Operation::Power, ElementType::Double, left, NodeOf(exponent, OwnType(exponent)));
}

Symbol Translator::Raise(Value term, Value factor)
{
    if (term.Constant && factor.Constant)
        return Folded(kelvane::Raise(*term.Constant, *factor.Constant));
    return Combined(PowerNode(term, factor), term, factor);
}

Symbol Translator::Apply(Token function, Value argument)
{
    if (argument.Constant)
        return Folded(ApplyFunction(function, *argument.Constant));
    if (function == Token::Atan)
        Check(argument);
    Value result;
    result.Constant.reset();
    result.Width = Precision::Double;
    result.Node = Emit(OperationOf(function), ElementType::Double, argument.Node);
    return result;
}

// ---- from nodes to instructions

// Assigns registers to the nodes that have a use.
class Assembler {
public:
    explicit Assembler(const std::vector<Node>& nodes)
        : m_nodes(nodes)
        , m_operands(nodes.size())
        , m_lastUse(nodes.size(), kNone)
    {
    }

    // False when there are too few registers.
    bool Assemble(Program& program);

private:
    const Node& At(int node) const { return m_nodes[static_cast<std::size_t>(node)]; }
    int& LastUse(int node) { return m_lastUse[static_cast<std::size_t>(node)]; }

    void FindUses();
    void FreeOperands(int node, bool sameSize);
    bool GiveRegister(int node, Program& program);

    const std::vector<Node>& m_nodes;
    std::vector<Operand> m_operands; // by node: where its result is
    std::vector<int> m_lastUse;      // by node: the last node that reads it; kNone: unused
    std::vector<int> m_free;         // registers
};

bool HasResult(const Node& node)
{
    return node.Code != Operation::Check && node.Code != Operation::Finish;
}

void Assembler::FindUses()
{
    for (int node = static_cast<int>(m_nodes.size()) - 1; node >= 0; --node) {
        if (At(node).Fixed || (HasResult(At(node)) && LastUse(node) == kNone))
            continue;
        for (const int operand : {At(node).A, At(node).B}) {
            if (operand != kNone && LastUse(operand) == kNone)
                LastUse(operand) = node;
        }
    }
}

// Gives back the registers that a node reads last, those of the size of its result or the others.
void Assembler::FreeOperands(int node, bool sameSize)
{
    const auto isSingle = [this](int n) { return At(n).Type == ElementType::Single; };
    const int second = At(node).B == At(node).A ? kNone : At(node).B;
    for (const int operand : {At(node).A, second}) {
        if (operand != kNone && !At(operand).Fixed && LastUse(operand) == node &&
            (isSingle(operand) == isSingle(node)) == sameSize)
            m_free.push_back(m_operands[static_cast<std::size_t>(operand)].Index);
    }
}

bool Assembler::GiveRegister(int node, Program& program)
{
    if (m_free.empty()) {
        if (program.Registers == Program::kMaxRegisters)
            return false;
        m_free.push_back(program.Registers++);
    }
    m_operands[static_cast<std::size_t>(node)] = {OperandKind::Register, At(node).Type,
                                                  static_cast<std::uint16_t>(m_free.back())};
    m_free.pop_back();
    return true;
}

bool Assembler::Assemble(Program& program)
{
    FindUses();
    for (int node = 0; node < static_cast<int>(m_nodes.size()); ++node) {
        const auto index = static_cast<std::size_t>(node);
        if (At(node).Fixed)
            m_operands[index] = *At(node).Fixed;
        if (At(node).Fixed || (HasResult(At(node)) && LastUse(node) == kNone))
            continue;
        FreeOperands(node, true);
        if (HasResult(At(node)) && !GiveRegister(node, program))
            return false;
        FreeOperands(node, false);
        const Operand& a = m_operands[static_cast<std::size_t>(At(node).A)];
        program.MayFailInside = program.MayFailInside || At(node).Code == Operation::Check;
        Operand b = a;
        b.Type = At(node).Type;
        if (At(node).B != kNone)
            b = m_operands[static_cast<std::size_t>(At(node).B)];
        program.Code.push_back({At(node).Code, a, b, m_operands[index].Index, At(node).Parameter});
    }
    return true;
}

} // namespace

Program Compile(const Equation& equation, int position)
{
    Translator translator;
    translator.Finish(WalkSlots(translator, position, equation));
    Program program;
    if (!Assembler(translator.Nodes).Assemble(program))
        return {};
    program.Constants = std::move(translator.Constants);
    program.Bases = std::move(translator.Bases);
    return program;
}

} // namespace kelvane
