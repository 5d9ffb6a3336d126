#pragma once

#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

#include "engine/program.h"

// A calculation on real numbers as a graph of nodes, in which equal operations on equal operands
// are one node. Internal to the compiler of fields.
//
// Nodes refer to earlier ones. Constants are calculated at once, and what is easier in another form
// takes that form, but never at the price of a point at which the calculation would fail: x/x
// stays, and so does 0 times log(x).

namespace kelvane {

struct FieldNode {
    OperandKind Kind = OperandKind::Register; // Register: calculated from A and perhaps B
    Operation Code = Operation::Finish;
    int A = 0;
    int B = 0;           // A once more where there is no second operand
    int Parameter = 0;   // of a HalvesPower: the halves; of a variable: 0 for x, 1 for y
    double Value = 0;    // of a constant; finite
    bool IsZero = false; // 0 at all points at which it has a value
};

// Operands and results are numbers of nodes.
class FieldGraph {
public:
    static constexpr int kZero = 0; // the node of the constant 0

    FieldGraph() { Constant(0); }

    const FieldNode& At(int node) const { return m_nodes[static_cast<std::size_t>(node)]; }
    int Size() const { return static_cast<int>(m_nodes.size()); }
    bool IsConstant(int node) const { return At(node).Kind == OperandKind::Constant; }
    bool IsConstant(int node, double value) const
    {
        return IsConstant(node) && At(node).Value == value;
    }

    bool IsNegated(int node) const { return Is(node, Operation::Negate); }

    int Constant(double value); // finite
    int Variable(int index);

    // An operation on constants gives a constant, unless the result is not finite.
    int Add(int a, int b);
    int Subtract(int a, int b);
    int Multiply(int a, int b);
    int Divide(int a, int b);
    int Negate(int a);

    // HalvesPower, BasePower with the base as B, or Power; BasePower needs the base to be positive.
    int Raise(int a, int b);

    // A function of one operand: Sine to ArcTangent, Sign or Positive.
    int Apply(Operation function, int a);

    // The nodes up to this one that its value depends on, itself included, by node.
    std::vector<bool> NeededFor(int node) const;

    // Whether a variable decides if the node has a value, overflow apart.
    bool MayFailBy(int variable, int node) const;

private:
    using Key = std::tuple<OperandKind, Operation, int, int, int, std::uint64_t>;

    int Node(const FieldNode& node);
    int Calculated(Operation code, int a, int b, bool isZero);
    int Halves(int a, int halves);
    int MergedPowers(int a, int b);
    int Doubled(int a);
    bool IsSizeOf(int node, int a) const
    {
        return Is(node, Operation::Absolute) && At(node).A == a;
    }
    bool Is(int node, Operation code) const
    {
        return At(node).Kind == OperandKind::Register && At(node).Code == code;
    }

    std::vector<FieldNode> m_nodes;
    std::map<Key, int> m_known;
};

struct FieldSlopes {
    int AlongX = FieldGraph::kZero;
    int AlongY = FieldGraph::kZero;
};

// The partial derivatives of a node, whose nodes are added to the graph. They may have values, or
// fail, where the node itself has none.
FieldSlopes Differentiate(FieldGraph& graph, int node);

} // namespace kelvane
