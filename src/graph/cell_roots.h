#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graph/cell_field.h"

namespace kelvane {

// A straight line from A to B along which a quantity changes its sign.
struct Bracket {
    LatticePoint A;
    LatticePoint B;
    double AtA = 0; // the quantity
    double AtB = 0;

    // Where the quantity is zero if it is linear between A and B.
    LatticePoint Root() const;
    double Length() const;
    LatticeBox Box() const;

    bool HasFailed() const { return std::isnan(AtA); } // met a point without a value
};

enum class RootOf : std::uint8_t {
    Value,     // f
    AlongSlope // the derivative of f along the line, in its direction, a step
};

// Zeros count as positive, so that a curve on the border of two cells belongs to one of them.
inline bool IsNegative(double value)
{
    return value < 0;
}
inline bool Differ(double one, double other)
{
    return IsNegative(one) != IsNegative(other);
}

// Narrows many brackets at a time.
class RootFinder {
public:
    explicit RootFinder(CellField& field)
        : m_field(field)
    {
    }

    // Until each is no longer than the tolerance. The quantity at both ends must be known.
    void Find(std::span<Bracket> brackets, RootOf what, double tolerance);

    // Of brackets where f has a value at A and none at B: until A is the last point that has one.
    // AtA becomes its value.
    void FindBorders(std::span<Bracket> brackets);

private:
    enum class End : std::uint8_t { Neither, A, B };

    // How the search of one bracket goes on.
    struct Course {
        std::size_t Index = 0;
        double WeightA = 0; // what the next trial takes for AtA and AtB
        double WeightB = 0;
        double CheckedLength = 0; // some trials ago
        LatticePoint Trial;
        LatticePoint Direction;   // from A to B, of length 1
        End Moved = End::Neither; // by the last trial
        bool Halve = false;       // in the next
    };

    void Begin(std::span<const Bracket> brackets);
    void Evaluate(RootOf what);
    static void Narrow(Bracket& bracket, Course& course, double value);

    CellField& m_field;
    std::vector<Course> m_courses;
    std::vector<LatticePoint> m_points;
    std::vector<double> m_values;
    std::vector<SlopeSample> m_samples;
};

} // namespace kelvane
