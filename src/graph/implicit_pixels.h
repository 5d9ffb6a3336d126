#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graph/cell_fill.h"
#include "graph/cell_finish.h"

namespace kelvane {

// How much there is to do, which decides how much each pixel is worth.
enum class Crowd : std::uint8_t {
    Few,
    Many,  // two pieces of the curve side by side in a pixel fill it, or any touch of zero
    Masses // the same, and the quickest ways first
};

enum class PixelKind : std::uint8_t { Continuous, NotContinuous };

// Looks into single pixels: cells of an eighth of a step, or a quarter where a crowd of
// pixels is not continuous.
class PixelSearch {
public:
    PixelSearch(CellField& field, CellSieve& sieve, CurveSketch& sketch)
        : m_field(field)
        , m_sieve(sieve)
        , m_sketch(sketch)
        , m_filler(field)
        , m_finisher(field, sketch)
        , m_touches(field)
    {
    }

    // Finds what of the curve is in these pixels, a few dozen at a time.
    void Search(std::span<const LatticeBox> pixels, PixelKind kind, Crowd crowd);

private:
    void FillChanging(PixelKind kind, int changes);
    void FillTouched();
    void JoinTouches();
    void FillDone();
    void JudgeDoubtful();

    CellField& m_field;
    CellSieve& m_sieve;
    CurveSketch& m_sketch;
    CellFiller m_filler;
    CellFinisher m_finisher;
    TouchFinder m_touches;
    std::vector<LatticeBox> m_boxes;
    std::vector<OpenCell> m_open;
    std::vector<CellRange> m_ranges;
    std::vector<char> m_done;
    std::vector<char> m_touched;
    std::vector<char> m_hopeless; // nothing has been found in the pixel
};

} // namespace kelvane
