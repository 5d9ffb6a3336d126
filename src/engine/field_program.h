#pragma once

#include "engine/field.h"
#include "engine/field_graph.h"

namespace kelvane {

// The nodes of the outputs of a field.
struct FieldNodes {
    int Value = FieldGraph::kZero;
    FieldSlopes Slopes;
};

// The program that calculates them, for a field's Code and ValueLength; the derivatives use what
// the value has calculated. Guards are added to the graph. False when it takes too many registers
// or constants. Internal to the compiler of fields.
bool Assemble(FieldGraph& graph, const FieldNodes& nodes, Field& field);

} // namespace kelvane
