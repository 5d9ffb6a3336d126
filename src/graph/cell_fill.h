#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "graph/cell_sieve.h"

namespace kelvane {

// Finds open cells that are to be filled: as parts of an area, or because the curve is so dense
// that it runs through every pixel. The effort is small for cells that are not.
//
// Each function fills its last parameter with a flag for every cell: it is to be filled.
class CellFiller {
public:
    explicit CellFiller(CellField& field)
        : m_field(field)
        , m_roots(field)
    {
    }

    // Where f vanishes within rounding at all lattice points of the cell, or where every pixel of
    // a continuous cell shows both signs. The borders of the cells are whole numbers.
    void TestCells(std::span<const OpenCell> cells, std::vector<char>& filled);

    // Of single pixels: where f vanishes within rounding at the corners or exactly in a good part
    // of the pixel, or where so many changes of sign follow one another in a row or column of
    // samples; if f is not continuous one of the changes must be proven to be a zero.
    void TestPixels(std::span<const OpenCell> pixels, int changes, std::vector<char>& filled);

private:
    enum class Lattice : std::uint8_t { Middle, Halves, All };

    void TestAreas(std::span<const OpenCell> cells, std::vector<char>& filled);
    void KeepZero(std::span<const OpenCell> cells, Lattice lattice);
    void TestDense(std::span<const OpenCell> cells, std::vector<char>& filled);
    void KeepMixed(std::span<const OpenCell> cells, std::size_t from, std::size_t to);
    void KeepMixedPixels(std::size_t firstSample, std::size_t lastSample);
    void KeepMarked(const std::vector<char>& failed);
    void RankBrackets(std::size_t sample, std::size_t count);
    void ProveBrackets();
    void ProveZeros(std::span<const OpenCell> pixels, std::size_t tried, std::vector<char>& filled);

    CellField& m_field;
    RootFinder m_roots;
    std::vector<Bracket> m_brackets;
    std::vector<Bracket> m_ranked;
    std::vector<std::size_t> m_candidates; // indices of cells
    std::vector<LatticePoint> m_pixels;    // that must show both signs: their corners
    std::vector<std::size_t> m_owners;     // of the pixels, or of the points: cells
    std::vector<LatticePoint> m_points;
    std::vector<LatticeBox> m_boxes;
    std::vector<CellRange> m_ranges;
    std::vector<double> m_values;
    std::vector<char> m_failed;
};

} // namespace kelvane
