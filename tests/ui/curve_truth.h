#pragma once

#include <cstdint>
#include <functional>
#include <vector>

// The pixels of a picture that a curve goes through, found by brute force from C++ functions in
// doubles: nothing of the program's own calculation takes part.

namespace kelvane {

// The middle of pixel (i, j) lies at the world's (X0 + i StepX, Y0 + j StepY).
struct TruthWindow {
    int Width = 0;
    int Height = 0;
    double X0 = 0;
    double StepX = 1;
    double Y0 = 0;
    double StepY = -1;
};

enum class TruthMark : std::uint8_t {
    Off,
    Allowed, // drawn or not: a point of the curve that nobody need find
    On
};

using LineFunction = std::function<double(double)>;
using PlaneFunction = std::function<double(double, double)>;
using PlaneTest = std::function<bool(double, double)>;

class CurveTruth {
public:
    explicit CurveTruth(const TruthWindow& window);

    int Width() const { return m_window.Width - 2 * kMargin; }
    int Height() const { return m_window.Height - 2 * kMargin; }

    // Of a pixel of the picture or kMargin beyond: what is drawn at the border may belong there.
    static constexpr int kMargin = 2;
    TruthMark MarkAt(int column, int row) const;

    // Each marks all pixels of what it is given. A value that is not finite is no value.

    void Point(double x, double y, TruthMark mark = TruthMark::On);

    // All points at which the test holds; of a pixel, a grid of points is asked.
    void Area(const PlaneTest& test);

    // y = g(x) and x = g(y): hundreds of samples a pixel. Neighbours are joined where samples
    // between them, as dense as need be, show no jump; extremes between them are looked for.
    void Graph(const LineFunction& g);
    void GraphAlongY(const LineFunction& g);

    // (x(t), y(t)) for t between the ends. Jumps are not joined.
    void Path(const LineFunction& x, const LineFunction& y, double from, double to);

    // Where g is a whole number, at points at which the test holds. g must be continuous where it
    // matters; curves closer than a pixel are no difficulty.
    void Levels(const PlaneFunction& g, const PlaneTest& test = nullptr);

    // f = 0 by samples on a grid of so many points a pixel and direction: changes of sign towards
    // which |f| shrinks, least |f| that turns out to be 0, edges of the domain towards which f
    // goes to 0, samples at which f is 0.
    void Zeros(const PlaneFunction& f, int perPixel = 4);

private:
    struct Spot { // u and v in pixels, whole at the pixels' middles
        double U = 0;
        double V = 0;
    };
    struct Sample {
        Spot At;
        double F = 0;
    };

    double X(double u) const { return m_window.X0 + u * m_window.StepX; }
    double Y(double v) const { return m_window.Y0 + v * m_window.StepY; }
    bool IsOn(Spot spot) const;
    void Put(Spot spot, TruthMark mark = TruthMark::On);
    void JoinPath(const std::function<Spot(double)>& spotAt, double from, double to);
    void JoinGraph(const std::function<Spot(double)>& spotAt, double from, double to);
    bool IsFilled(Spot from, Spot to) const;
    void TestPair(const PlaneFunction& f, const Sample& a, const Sample& b);
    void TestValley(const PlaneFunction& f, const Sample& a, const Sample& b, const Sample& c);
    void TestPit(const PlaneFunction& f, const Sample& middle, double reach, double around);
    double At(const PlaneFunction& f, Spot spot) const { return f(X(spot.U), Y(spot.V)); }

    TruthWindow m_window; // the margin included
    std::vector<TruthMark> m_marks;
};

// How well a drawn picture shows the truth.
struct TruthScore {
    std::int64_t TruthPixels = 0;
    std::int64_t DrawnPixels = 0;
    double Found = 1; // share of the true pixels within 1.5 pixels of a drawn one
    double Right = 1; // share of the drawn pixels within 1.5 pixels of a true or allowed one
};

// Drawn has an entry for every pixel, row by row; not 0 where there is ink.
TruthScore ScoreAgainst(const CurveTruth& truth, const std::vector<std::uint8_t>& drawn);

} // namespace kelvane
