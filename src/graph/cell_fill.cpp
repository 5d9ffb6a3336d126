#include "graph/cell_fill.h"

#include <limits>

namespace kelvane {

namespace {

// Where a pixel is sampled, from its corner: its corners and middle, then spread evenly.
constexpr std::size_t kFirstSamples = 5;
constexpr std::size_t kAllSamples = 29;
constexpr std::array<LatticePoint, kAllSamples> MakeSamplePlaces()
{
    std::array<LatticePoint, kAllSamples> places{
        {{0.5, 0.5}, {0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}, {1.0, 1.0}}};
    for (std::size_t at = kFirstSamples; at < kAllSamples; ++at) {
        const LatticePoint last = places[at - 1]; // steps by powers of the root of a^3 = a + 1
        const double u = last.U + 0.7548776662466927;
        const double v = last.V + 0.5698402909980532;
        places[at] = {u < 1 ? u : u - 1, v < 1 ? v : v - 1};
    }
    return places;
}
constexpr auto kSamplePlaces = MakeSamplePlaces();

// Samples of a pixel in rows, unevenly, lest a wave keep step with them.
constexpr std::size_t kGrid = 5;
constexpr std::array<double, kGrid> kGridPlaces{0, 0.21, 0.47, 0.76, 1};
constexpr int kManyZeros = 10;
using Grid = std::span<const double, kGrid * kGrid>;

int ChangesAlong(Grid grid, std::size_t first, std::size_t step)
{
    int changes = 0;
    for (std::size_t k = first; k < first + (kGrid - 1) * step; k += step)
        changes += Differ(grid[k], grid[k + step]) ? 1 : 0;
    return changes;
}

bool IsFull(Grid grid, int changes)
{
    if (std::count(grid.begin(), grid.end(), 0.0) >= kManyZeros)
        return true;
    for (std::size_t k = 0; k < kGrid; ++k) {
        if (ChangesAlong(grid, k * kGrid, 1) >= changes || ChangesAlong(grid, k, kGrid) >= changes)
            return true;
    }
    return false;
}

} // namespace

void CellFiller::TestCells(std::span<const OpenCell> cells, std::vector<char>& filled)
{
    filled.assign(cells.size(), 0);
    TestAreas(cells, filled);
    TestDense(cells, filled);
}

void CellFiller::KeepMarked(const std::vector<char>& failed)
{
    std::erase_if(m_candidates, [&](std::size_t cell) { return failed[cell] != 0; });
}

void CellFiller::TestAreas(std::span<const OpenCell> cells, std::vector<char>& filled)
{
    m_candidates.clear();
    for (std::size_t at = 0; at < cells.size(); ++at) {
        if (cells[at].MiddleMayBeZero)
            m_candidates.push_back(at);
    }
    KeepZero(cells, Lattice::Middle);
    KeepZero(cells, Lattice::Halves);
    KeepZero(cells, Lattice::All);
    for (const std::size_t at : m_candidates)
        filled[at] = 1;
}

// Keeps candidates with zeros within rounding at these points.
void CellFiller::KeepZero(std::span<const OpenCell> cells, Lattice lattice)
{
    m_boxes.clear();
    m_owners.clear();
    for (const std::size_t cell : m_candidates) {
        const LatticeBox& box = cells[cell].Box;
        const bool all = lattice == Lattice::All;
        const double columns = all ? std::max(box.U1 - box.U0, 1.0) : 2; // between points
        const double rows = all ? std::max(box.V1 - box.V0, 1.0) : 2;
        const int skipped = lattice == Lattice::Middle ? 1 : 0;
        for (int row = skipped; row <= static_cast<int>(rows) - skipped; ++row) {
            for (int column = skipped; column <= static_cast<int>(columns) - skipped; ++column) {
                m_boxes.push_back(AsBox({box.U0 + (box.U1 - box.U0) * column / columns,
                                         box.V0 + (box.V1 - box.V0) * row / rows}));
                m_owners.push_back(cell);
            }
        }
    }
    m_field.Ranges(m_boxes, FieldPart::Value, m_ranges);
    m_failed.assign(cells.size(), 0);
    for (std::size_t at = 0; at < m_boxes.size(); ++at) {
        if (m_ranges[at].Marks != 0 || !m_ranges[at].F.HoldZero())
            m_failed[m_owners[at]] = 1;
    }
    KeepMarked(m_failed);
}

void CellFiller::TestDense(std::span<const OpenCell> cells, std::vector<char>& filled)
{
    constexpr std::array<std::size_t, 4> kPixelsTested{1, 4, 16, 64}; // so far, after each round
    m_candidates.clear();
    for (std::size_t at = 0; at < cells.size(); ++at) {
        if (cells[at].IsContinuous() && filled[at] == 0)
            m_candidates.push_back(at);
    }
    std::size_t tested = 0;
    for (const std::size_t next : kPixelsTested) {
        KeepMixed(cells, tested, next);
        tested = next;
    }
    for (const std::size_t at : m_candidates)
        filled[at] = 1;
}

// Keeps candidates whose pixels from one number to another all show both signs. Pixels are numbered
// from the middle on, in strides.
void CellFiller::KeepMixed(std::span<const OpenCell> cells, std::size_t from, std::size_t to)
{
    constexpr std::size_t kStride = 37; // a prime, no divisor of their number
    m_pixels.clear();
    m_owners.clear();
    for (const std::size_t cell : m_candidates) {
        const LatticeBox& box = cells[cell].Box;
        const auto width = static_cast<std::size_t>(box.U1 - box.U0);
        const auto count = width * static_cast<std::size_t>(box.V1 - box.V0);
        for (std::size_t number = from; number < std::min(to, count); ++number) {
            const std::size_t pixel = (number * kStride + (count + width) / 2) % count;
            const std::size_t row = pixel / width;
            m_pixels.push_back(
                {box.U0 + static_cast<double>(pixel % width), box.V0 + static_cast<double>(row)});
            m_owners.push_back(cell);
        }
    }
    m_failed.assign(cells.size(), 0);
    KeepMixedPixels(0, kFirstSamples);
    const bool isPixel = !cells.empty() && cells.front().Box.U1 - cells.front().Box.U0 <= 1;
    if (from > 0 || isPixel)
        KeepMixedPixels(kFirstSamples, kAllSamples);
    for (const std::size_t owner : m_owners)
        m_failed[owner] = 1;
    KeepMarked(m_failed);
}

// Leaves of the pixels those that show the same sign at these samples and at the corner.
void CellFiller::KeepMixedPixels(std::size_t firstSample, std::size_t lastSample)
{
    const std::size_t samples = lastSample - firstSample;
    m_points.clear();
    for (const LatticePoint& pixel : m_pixels) {
        for (std::size_t sample = firstSample; sample < lastSample; ++sample) {
            const LatticePoint& place = kSamplePlaces[sample];
            m_points.push_back({pixel.U + place.U, pixel.V + place.V});
        }
    }
    m_field.Values(m_points, m_values);
    std::size_t left = 0;
    for (std::size_t at = 0; at < m_pixels.size(); ++at) {
        const std::span<const double> values{m_values.data() + at * samples, samples};
        const auto negative =
            static_cast<std::size_t>(std::count_if(values.begin(), values.end(), IsNegative));
        if (negative > 0 && negative < samples)
            continue;
        m_pixels[left] = m_pixels[at];
        m_owners[left++] = m_owners[at];
    }
    m_pixels.resize(left);
    m_owners.resize(left);
}

void CellFiller::TestPixels(std::span<const OpenCell> pixels, int changes,
                            std::vector<char>& filled)
{
    filled.assign(pixels.size(), 0);
    TestAreas(pixels, filled);
    m_candidates.clear();
    m_points.clear();
    for (std::size_t at = 0; at < pixels.size(); ++at) {
        if (filled[at] != 0)
            continue;
        m_candidates.push_back(at);
        for (const double v : kGridPlaces) {
            for (const double u : kGridPlaces)
                m_points.push_back({pixels[at].Box.U0 + u, pixels[at].Box.V0 + v});
        }
    }
    m_field.Values(m_points, m_values);
    for (std::size_t k = 0; k < m_candidates.size(); ++k) {
        const Grid grid{m_values.data() + k * Grid::extent, Grid::extent};
        filled[m_candidates[k]] = IsFull(grid, changes) ? 1 : 0;
    }
    // Where fewer changes are content the pixels are crowded, and their proofs worth more effort.
    ProveZeros(pixels, changes > 2 ? 3 : 12, filled);
}

// Brackets so many changes of sign in a grid of values, those with the smallest values first: they
// are hardly poles. The first sample of the grid must be m_points' and m_values' at this index.
void CellFiller::RankBrackets(std::size_t sample, std::size_t count)
{
    const Grid grid{m_values.data() + sample, Grid::extent};
    const std::size_t first = m_ranked.size();
    const auto compare = [&](std::size_t a, std::size_t b) {
        if (grid[a] * grid[b] <= 0)
            m_ranked.push_back({m_points[sample + a], m_points[sample + b], grid[a], grid[b]});
    };
    for (std::size_t k = 0; k < Grid::extent; ++k) {
        if (k % kGrid + 1 < kGrid)
            compare(k, k + 1);
        if (k + kGrid < Grid::extent)
            compare(k, k + kGrid);
    }
    const auto size = [](const Bracket& bracket) {
        return std::max(std::abs(bracket.AtA), std::abs(bracket.AtB));
    };
    const std::size_t end = std::min(m_ranked.size(), first + count);
    const auto begin = m_ranked.begin();
    std::partial_sort(
        begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(end),
        m_ranked.end(),
        [&](const Bracket& one, const Bracket& other) { return size(one) < size(other); });
    m_ranked.resize(end);
}

// Takes back the flags of pixels in which f is not continuous and no zero can be proven. The
// candidates' grids of values must be there.
void CellFiller::ProveZeros(std::span<const OpenCell> pixels, std::size_t tried,
                            std::vector<char>& filled)
{
    struct Doubt {
        std::size_t Pixel;
        std::size_t First; // of its ranked brackets
        std::size_t End;
    };
    std::vector<Doubt> doubts;
    m_ranked.clear();
    for (std::size_t k = 0; k < m_candidates.size(); ++k) {
        const std::size_t pixel = m_candidates[k];
        if (filled[pixel] == 0 || pixels[pixel].IsContinuous())
            continue;
        filled[pixel] = 0;
        const std::size_t first = m_ranked.size();
        RankBrackets(k * Grid::extent, tried);
        doubts.push_back({pixel, first, m_ranked.size()});
    }
    for (std::size_t rank = 0; rank < tried && !doubts.empty(); ++rank) {
        m_brackets.clear();
        std::erase_if(doubts, [&](const Doubt& doubt) {
            return filled[doubt.Pixel] != 0 || doubt.First + rank >= doubt.End;
        });
        for (const Doubt& doubt : doubts)
            m_brackets.push_back(m_ranked[doubt.First + rank]);
        ProveBrackets();
        for (std::size_t at = 0; at < doubts.size(); ++at)
            filled[doubts[at].Pixel] = m_failed[at] == 0 ? 1 : 0;
    }
}

// Leaves a flag for every bracket in which no zero can be proven.
void CellFiller::ProveBrackets()
{
    constexpr double kTolerance = 0.01; // steps; the dozens of zeros of a pixel are further apart
    m_roots.Find(m_brackets, RootOf::Value, kTolerance);
    m_boxes.clear();
    for (const Bracket& bracket : m_brackets)
        m_boxes.push_back(bracket.Box());
    m_field.Ranges(m_boxes, FieldPart::Value, m_ranges);
    m_failed.assign(m_brackets.size(), 0);
    for (std::size_t at = 0; at < m_brackets.size(); ++at) {
        const bool proven = m_ranges[at].Marks == 0 && m_ranges[at].F.HoldZero();
        m_failed[at] = proven && !m_brackets[at].HasFailed() ? 0 : 1;
    }
}

} // namespace kelvane
