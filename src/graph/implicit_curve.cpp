#include "graph/implicit_curve.h"

#include <memory>

#include "graph/implicit_pixels.h"

namespace kelvane {

namespace {

constexpr int kRootSize = 32;                 // steps
constexpr int kFillSize = 8;                  // cells up to this size may be filled
constexpr int kMinFillSize = 4;               // down to this size, and single pixels
constexpr std::size_t kMaxCells = 4'000'000;  // that wait
constexpr std::size_t kMaxPixels = 4'000'000; // of each kind
constexpr std::size_t kPixelsAtATime = 32;
constexpr std::size_t kManyPixels = 20'000;
constexpr std::size_t kMassesOfPixels = 150'000;
constexpr std::size_t kMassesOfCells = 400'000; // of single pixels
constexpr double kCellShare = 0.5;              // of the progress

// A cell of the current size: the column and the row of it.
struct CellPlace {
    std::uint16_t Column = 0;
    std::uint16_t Row = 0;
};

class ImplicitSearch {
public:
    explicit ImplicitSearch(const CurveSearch& search)
        : m_field(search)
        , m_search(search)
        , m_tracer(m_field, search.Sketch)
        , m_sieve(m_field, m_tracer, search.Sketch)
        , m_filler(m_field)
        , m_pixelSearch(m_field, m_sieve, search.Sketch)
    {
    }

    Pace Run();

private:
    bool MayGoOn(double fraction);
    LatticeBox BoxOf(CellPlace place, int size) const;
    void SearchCells(int size);
    void SearchBlock(std::span<const CellPlace> places, int size);
    void Fill(int size);
    void Quarter(const LatticeBox& box, int size);
    void KeepPixel(const OpenCell& pixel);
    void SearchPixels(const std::vector<CellPlace>& pixels, PixelKind kind);
    void GiveUp(std::span<const CellPlace> places, int size);

    CellField m_field;
    const CurveSearch& m_search;
    CellTracer m_tracer;
    CellSieve m_sieve;
    CellFiller m_filler;
    PixelSearch m_pixelSearch;

    Pace m_pace = Pace::GoOn;
    std::vector<CellPlace> m_cells;  // to be searched, all of one size
    std::vector<CellPlace> m_next;   // half as large
    std::vector<CellPlace> m_pixels; // continuous ones that remain open
    std::vector<CellPlace> m_markedPixels;
    std::size_t m_pixelsDone = 0;

    std::vector<LatticeBox> m_boxes;
    std::vector<OpenCell> m_open;
    std::vector<char> m_filled;
};

bool ImplicitSearch::MayGoOn(double fraction)
{
    if (m_pace == Pace::GoOn && m_field.IsBreathDue())
        m_pace = m_search.Pacer.Ask(fraction);
    return m_pace == Pace::GoOn;
}

LatticeBox ImplicitSearch::BoxOf(CellPlace place, int size) const
{
    const int u = place.Column * size;
    const int v = place.Row * size;
    return {static_cast<double>(u), static_cast<double>(v),
            static_cast<double>(std::min(u + size, m_search.Lattice.Width)),
            static_cast<double>(std::min(v + size, m_search.Lattice.Height))};
}

Pace ImplicitSearch::Run()
{
    const PixelLattice& lattice = m_search.Lattice;
    m_pace = m_search.Pacer.Ask(0);
    for (int row = 0; row * kRootSize < lattice.Height; ++row) {
        for (int column = 0; column * kRootSize < lattice.Width; ++column) {
            m_cells.push_back(
                {static_cast<std::uint16_t>(column), static_cast<std::uint16_t>(row)});
        }
    }
    for (int size = kRootSize; size > 0 && m_pace != Pace::Stop; size /= 2) {
        SearchCells(size);
        m_cells.swap(m_next);
        m_next.clear();
    }
    SearchPixels(m_pixels, PixelKind::Continuous);
    SearchPixels(m_markedPixels, PixelKind::NotContinuous);
    if (m_pace != Pace::Stop)
        m_tracer.Flush();
    return m_pace;
}

// Searches all cells of a size; what remains open of them goes to the next smaller ones.
void ImplicitSearch::SearchCells(int size)
{
    const auto total = static_cast<double>(m_cells.size());
    // Every size has the same share of the progress.
    const double share = kCellShare / (std::log2(kRootSize) + 1);
    const double begin = kCellShare - share * (std::log2(size) + 1);
    // Tests whether to fill a cell take longer, the larger it is.
    const std::size_t block =
        size <= kFillSize ? kBlockPoints / static_cast<std::size_t>(size) : kBlockPoints;
    for (std::size_t first = 0; first < m_cells.size(); first += block) {
        const auto done = static_cast<double>(first) / total;
        if (!MayGoOn(begin + share * done)) {
            GiveUp(std::span{m_cells}.subspan(first), size);
            break;
        }
        const std::size_t count = std::min(block, m_cells.size() - first);
        SearchBlock(std::span{m_cells}.subspan(first, count), size);
    }
    if (m_pace == Pace::GoOn)
        m_tracer.Flush();
}

void ImplicitSearch::SearchBlock(std::span<const CellPlace> places, int size)
{
    m_boxes.clear();
    for (const CellPlace place : places)
        m_boxes.push_back(BoxOf(place, size));
    m_open.clear();
    m_sieve.Sift(m_boxes, m_open);
    Fill(size);
    for (std::size_t at = 0; at < m_open.size(); ++at) {
        if (m_filled[at] != 0)
            m_search.Sketch.AddArea(m_open[at].Box);
        else if (size == 1)
            KeepPixel(m_open[at]);
        else
            Quarter(m_open[at].Box, size / 2);
    }
}

// Leaves a flag for every open cell.
void ImplicitSearch::Fill(int size)
{
    if (size == 1)
        m_filler.TestPixels(m_open, m_cells.size() > kMassesOfCells ? 2 : 3, m_filled);
    else if (size <= kFillSize && size >= kMinFillSize)
        m_filler.TestCells(m_open, m_filled);
    else
        m_filled.assign(m_open.size(), 0);
}

// Cells at the right and upper border of the lattice may have fewer than four quarters.
void ImplicitSearch::Quarter(const LatticeBox& box, int size)
{
    if (m_next.size() >= kMaxCells) {
        m_search.Sketch.AddUnresolved(box);
        return;
    }
    const auto indexOf = [size](double border) {
        return static_cast<int>(std::ceil(border / size));
    };
    for (int row = indexOf(box.V0); row < indexOf(box.V1); ++row) {
        for (int column = indexOf(box.U0); column < indexOf(box.U1); ++column) {
            m_next.push_back({static_cast<std::uint16_t>(column), static_cast<std::uint16_t>(row)});
        }
    }
}

void ImplicitSearch::KeepPixel(const OpenCell& pixel)
{
    std::vector<CellPlace>& pixels = pixel.IsContinuous() ? m_pixels : m_markedPixels;
    if (pixels.size() >= kMaxPixels)
        m_search.Sketch.AddUnresolved(pixel.Box);
    else
        pixels.push_back(
            {static_cast<std::uint16_t>(pixel.Box.U0), static_cast<std::uint16_t>(pixel.Box.V0)});
}

void ImplicitSearch::SearchPixels(const std::vector<CellPlace>& pixels, PixelKind kind)
{
    const auto total = static_cast<double>(m_pixels.size() + m_markedPixels.size());
    const Crowd crowd = pixels.size() > kMassesOfPixels ? Crowd::Masses
                        : pixels.size() > kManyPixels   ? Crowd::Many
                                                        : Crowd::Few;
    for (std::size_t first = 0; first < pixels.size(); first += kPixelsAtATime) {
        const double done = static_cast<double>(m_pixelsDone) / total;
        if (!MayGoOn(kCellShare + (1 - kCellShare) * done)) {
            GiveUp(std::span{pixels}.subspan(first), 1);
            return;
        }
        m_boxes.clear();
        const std::size_t count = std::min(kPixelsAtATime, pixels.size() - first);
        for (const CellPlace place : std::span{pixels}.subspan(first, count))
            m_boxes.push_back(BoxOf(place, 1));
        m_pixelSearch.Search(m_boxes, kind, crowd);
        m_pixelsDone += count;
    }
}

// Leaves all of these cells unresolved, rows of neighbours as one.
void ImplicitSearch::GiveUp(std::span<const CellPlace> places, int size)
{
    if (m_pace == Pace::Stop)
        return;
    std::vector<CellPlace> rest{places.begin(), places.end()};
    std::sort(rest.begin(), rest.end(), [](CellPlace one, CellPlace other) {
        return one.Row != other.Row ? one.Row < other.Row : one.Column < other.Column;
    });
    for (std::size_t first = 0; first < rest.size();) {
        std::size_t last = first;
        while (last + 1 < rest.size() && rest[last + 1].Row == rest[first].Row &&
               rest[last + 1].Column == rest[last].Column + 1)
            ++last;
        LatticeBox box = BoxOf(rest[first], size);
        box.U1 = BoxOf(rest[last], size).U1;
        m_search.Sketch.AddUnresolved(box);
        first = last + 1;
    }
}

} // namespace

Pace TraceImplicit(const CurveSearch& search)
{
    return std::make_unique<ImplicitSearch>(search)->Run();
}

} // namespace kelvane
