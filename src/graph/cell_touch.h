#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

#include "graph/cell_roots.h"

namespace kelvane {

// Finds zeros at which f does not change its sign: where it touches zero from one side. No
// calculation can prove them; they count where f is zero within the rounding of its calculation,
// and very small compared with its values around. Two zeros close to each other between which f
// reaches the other sign count as one.
class TouchFinder {
public:
    explicit TouchFinder(CellField& field)
        : m_field(field)
        , m_roots(field)
    {
    }

    // Zeros on the edges of boxes where f has an extremum along the edge, for every box up to
    // four different ones. Edges reach a little over the corners.
    struct OnEdges {
        std::size_t Count = 0;
        std::array<LatticePoint, 4> At;
    };
    // The crossing is how far f may reach the other sign, compared with its values at the corners.
    static constexpr double kAnyCrossing = 1e300;
    void FindOnEdges(std::span<const LatticeBox> boxes, std::vector<OnEdges>& found,
                     double crossing);

    // Whether there is one on the diagonals of each box, if only little effort is to be spent.
    void FindAcross(std::span<const LatticeBox> boxes, std::vector<char>& found);

    // A way from a point at which |f| seems to fall along it, and on which f need not be
    // continuous.
    struct Stretch {
        LatticePoint From;
        LatticePoint To;
        std::size_t Owner = 0;
    };
    struct Touch {
        LatticePoint At;
        std::size_t Owner = 0; // as the stretch has it
    };
    // Zeros on stretches, on such parts of them as are proven continuous: however close they are to
    // a pole or the border of a domain.
    void FindOnStretches(std::span<const Stretch> stretches, std::vector<Touch>& found);

    // A zero in each box or close to it, if |f| has a minimum there that is one.
    void FindMinima(std::span<const LatticeBox> boxes,
                    std::vector<std::optional<LatticePoint>>& found);

    // Whether each point counts as a zero, f being the value there.
    void AreZeros(std::span<const LatticePoint> points, std::span<const double> values,
                  std::vector<char>& zeros);

private:
    // The smallest |f| so far in a box, and how far away the next trials are.
    struct Descent {
        std::size_t Box = 0;
        LatticePoint At;
        double Value = 0;
        double First = 0; // |f| where it began
        double Step = 0;
    };

    // A part of a stretch, with f and its slope along the way.
    struct Part {
        LatticePoint A;
        LatticePoint B;
        SlopeSample AtA;
        SlopeSample AtB;
        std::size_t Owner = 0;

        bool FallsFromEither() const;
    };

    enum class Diagonal : std::uint8_t { Rising, Falling };

    void BeginDescents(std::span<const LatticeBox> boxes);
    void StepDescents(std::span<const LatticeBox> boxes);
    void BeginParts(std::span<const Stretch> stretches);
    void BracketContinuousParts();
    void HalveParts();
    void BracketEdges(std::span<const LatticeBox> boxes);
    void AddFall(std::size_t a, std::size_t b, std::size_t owner, double bend);
    void BracketAcross(std::span<const LatticeBox> boxes, Diagonal diagonal,
                       const std::vector<char>& done);
    void Resolve(double crossing);
    void TakeSmallest();

    CellField& m_field;
    RootFinder m_roots;
    std::vector<Bracket> m_brackets;
    std::vector<std::size_t> m_owners; // of the brackets: boxes
    std::vector<double> m_endValues;   // of the brackets: the larger |f| at the ends, with its sign
    std::vector<std::size_t> m_samplers; // boxes that are sampled
    std::vector<LatticePoint> m_points;
    std::vector<SlopeSample> m_samples;
    std::vector<double> m_values;
    std::vector<LatticeBox> m_fuzzy;
    std::vector<CellRange> m_ranges;
    std::vector<double> m_around;
    std::vector<LatticePoint> m_aroundPoints;
    std::vector<char> m_zeros; // for each bracket: it holds a zero, at the point
    std::vector<Part> m_parts;
    std::vector<Part> m_halves;
    std::vector<Descent> m_descents;
    std::vector<Descent> m_ended;
};

} // namespace kelvane
