#include "graph/implicit_pixels.h"

#include <utility>

namespace kelvane {

namespace {

constexpr int kHalvings = 3;
constexpr int kCrowdedHalvings = 2;
constexpr int kCrowdedChanges = 2;

// Removes the elements whose flags are set.
template <typename Element>
void RemoveDone(std::vector<Element>& elements, const std::vector<char>& done)
{
    std::size_t left = 0;
    for (std::size_t at = 0; at < elements.size(); ++at) {
        if (done[at] == 0)
            elements[left++] = elements[at];
    }
    elements.resize(left);
}

void Quarter(const LatticeBox& box, std::vector<LatticeBox>& quarters)
{
    const LatticePoint middle = Middle(box);
    quarters.push_back({box.U0, box.V0, middle.U, middle.V});
    quarters.push_back({middle.U, box.V0, box.U1, middle.V});
    quarters.push_back({box.U0, middle.V, middle.U, box.V1});
    quarters.push_back({middle.U, middle.V, box.U1, box.V1});
}

} // namespace

void PixelSearch::FillDone()
{
    for (std::size_t at = 0; at < m_boxes.size(); ++at) {
        if (m_done[at] != 0)
            m_sketch.AddArea(m_boxes[at]);
    }
    RemoveDone(m_boxes, m_done);
}

void PixelSearch::FillChanging(PixelKind kind, int changes)
{
    m_open.clear();
    for (const LatticeBox& box : m_boxes) {
        m_open.push_back({box, {}, false});
        m_open.back().Range.Marks = kind == PixelKind::Continuous ? 0 : kMayJump;
    }
    m_filler.TestPixels(m_open, changes, m_done);
    FillDone();
}

void PixelSearch::FillTouched()
{
    m_touches.FindAcross(m_boxes, m_done);
    FillDone();
}

void PixelSearch::JoinTouches()
{
    m_finisher.JoinTouches(m_boxes, m_done);
    RemoveDone(m_boxes, m_done);
}

void PixelSearch::Search(std::span<const LatticeBox> pixels, PixelKind kind, Crowd crowd)
{
    m_boxes.assign(pixels.begin(), pixels.end());
    if (crowd != Crowd::Few)
        FillChanging(kind, kCrowdedChanges);
    if (kind == PixelKind::Continuous) {
        if (crowd == Crowd::Masses)
            FillTouched();
        JoinTouches();
        if (crowd == Crowd::Many)
            FillTouched();
    }
    m_open.clear();
    for (const LatticeBox& box : m_boxes)
        m_open.push_back({box, {}, false});
    const bool isHasty = crowd != Crowd::Few && kind == PixelKind::NotContinuous;
    const int halvings = isHasty ? kCrowdedHalvings : kHalvings;
    for (int halving = 0; halving < halvings && !m_open.empty(); ++halving) {
        m_boxes.clear();
        for (const OpenCell& cell : m_open)
            Quarter(cell.Box, m_boxes);
        m_open.clear();
        m_sieve.Sift(m_boxes, m_open);
    }
    m_finisher.Finish(m_open);
    JudgeDoubtful();
}

// Cells that arithmetic cannot exclude are common around a curve, but not half a pixel of them
// where there is none: such pixels are filled where they show the least sign of the curve. A change
// of sign is one only where f is continuous; beside a pole or a gap it says nothing.
void PixelSearch::JudgeDoubtful()
{
    constexpr std::size_t kTooMany = 32;
    const auto pixelOf = [](const LatticeBox& box) {
        return std::pair{std::floor(box.U0), std::floor(box.V0)};
    };
    m_boxes.clear();
    m_hopeless.clear();
    for (std::size_t first = 0; first < m_open.size();) {
        const auto [u, v] = pixelOf(m_open[first].Box);
        std::size_t doubtful = 0;
        bool hasFound = false;
        std::size_t at = first;
        for (; at < m_open.size() && pixelOf(m_open[at].Box) == std::pair{u, v}; ++at) {
            doubtful += m_open[at].IsContinuous() ? 1 : 0;
            hasFound = hasFound || m_finisher.HasFound(at);
        }
        if (doubtful >= kTooMany) {
            m_boxes.push_back({u, v, u + 1, v + 1});
            m_hopeless.push_back(hasFound ? 0 : 1);
        }
        first = at;
    }
    m_field.Ranges(m_boxes, FieldPart::Value, m_ranges);
    m_open.clear();
    for (std::size_t at = 0; at < m_boxes.size(); ++at)
        m_open.push_back({m_boxes[at], m_ranges[at], false});
    m_filler.TestCells(m_open, m_done);
    m_touches.FindAcross(m_boxes, m_touched);
    for (std::size_t at = 0; at < m_boxes.size(); ++at) {
        if (m_done[at] != 0 || (m_touched[at] != 0 && m_open[at].IsContinuous()))
            m_sketch.AddArea(m_boxes[at]);
        else if (m_hopeless[at] != 0)
            m_sketch.AddUnresolved(m_boxes[at]);
    }
}

} // namespace kelvane
