#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graph/explicit_function.h"

// A narrow piece of the abscissa over which the graph of a function is searched for. Values are in
// lattice units; only those from 0 to the lattice's height count.

namespace kelvane {

// A set of values. Gaps of less than half a step are filled.
class ValueSet {
public:
    void Add(const Interval& values);

    // What of the values is further than blur from all of the set.
    std::vector<Interval> Missing(const Interval& values, double blur) const;

    // In order.
    const std::vector<Interval>& Intervals() const { return m_intervals; }

private:
    std::vector<Interval> m_intervals;
};

// The function between two neighbouring samples.
struct Stretch {
    Interval At;   // abscissas
    double V0 = 0; // values at its ends, NaN where there are none
    double V1 = 0;
    ExplicitFunction::Bounds Known;

    // By how much the value at an end differs from the one at the end of the stretch that this one
    // was halved from; infinite while it is the same end.
    double Change0 = 0;
    double Change1 = 0;
    int Depth = 0; // how often it has been halved
};

// How the stretches are judged: the height of the lattice, and steps per unit of the abscissa.
struct CellScale {
    double Height = 0;
    double StepsPerUnit = 1;
};

// What is known of a stretch before it is halved.
enum class StretchKind : std::uint8_t {
    Empty, // nothing of it is in the lattice
    Line,  // the line between its samples is the graph, within a fraction of a pixel
    Open
};
StretchKind Judge(const Stretch& stretch, const CellScale& scale);

// Takes a cell apart by halving its stretches until each is empty or a line. Where that takes too
// long, because the function oscillates or jumps too often, stretches whose values cannot be others
// than those found elsewhere in the cell are left as they are.
class ExplicitCell {
public:
    // A stretch that is Open.
    ExplicitCell(const CellScale& scale, const Stretch& whole);

    // The stretch to be halved next: middle is where. False: there is none.
    bool Next(Stretch& stretch, double& middle);

    // Its halves, with all that is known of them.
    void Take(const Stretch& low, const Stretch& high);

    // How many have been taken.
    int Effort() const { return m_effort; }

    // To be called when the cell takes longer than most: saves room, and is less strict. The values
    // found will be drawn, but not where in the cell they are taken.
    void Relax();

    // Adds what has been found to the sketch, and what is left is unresolved. No further calls.
    void Finish(const ExplicitFunction& function, CurveSketch& sketch);

private:
    Stretch Pop();
    bool IsSettled(const Stretch& stretch) const;
    Interval Visible(const Interval& values) const;
    double Width(const Stretch& stretch) const;
    bool IsNegligible(const Stretch& stretch) const;
    void TakeNegligible(const Stretch& stretch);
    void TakeUndivided(const Stretch& stretch);
    void Drop(const Stretch& stretch);
    void TakeOne(const Stretch& stretch);
    void AddLines(const ExplicitFunction& function, CurveSketch& sketch);
    void AddStrokes(const ExplicitFunction& function, CurveSketch& sketch) const;
    void AddSampled(const ExplicitFunction& function, CurveSketch& sketch);
    void AddUnresolved(const ExplicitFunction& function, CurveSketch& sketch) const;

    CellScale m_scale;
    Stretch m_whole;
    std::vector<Stretch> m_open;
    std::vector<Stretch> m_stuck; // too narrow to be halved, and not negligible
    std::vector<Stretch> m_lines;
    ValueSet m_taken;   // values that the function takes, proven
    ValueSet m_sampled; // those at the ends of negligible stretches
    double m_sampledAt = 0;
    ValueSet m_dropped;        // the bounds of those
    double m_droppedWidth = 0; // of all of them, steps
    ValueSet m_unresolved;
    int m_popped = 0;
    int m_effort = 0;
    double m_blur;         // values no further than this from those taken are not looked for, steps
    bool m_isBand = false; // some stretches are settled only by the values of others
};

// Draws stretches that are lines, in order of their abscissas; those that touch become one piece.
void AddPieces(const ExplicitFunction& function, std::span<const Stretch> lines,
               CurveSketch& sketch);

} // namespace kelvane
