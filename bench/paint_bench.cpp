// Painting a curve of 100,000 samples on a picture of 1600 x 1000 pixels: through QtSurface, and as
// one polygon that is left to Qt.

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPolygonF>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "ui/qt_surface.h"

namespace {

using kelvane::PixelPoint;
using Points = std::vector<PixelPoint>;

constexpr int kWidth = 1600;
constexpr int kHeight = 1000;
constexpr int kSamples = 100000;

struct Shape {
    const char* Name;
    double (*Height)(int sample, double x);
};

constexpr std::array<Shape, 3> kShapes{{
    {"sine", [](int, double x) { return 500 - 400 * std::sin(x / 100); }},
    {"oscillation", [](int, double x) { return 500 - 300 * std::sin(3200 / (x - 800.001)); }},
    {"zigzag", [](int sample, double) { return sample % 2 == 0 ? 0.0 : kHeight - 1.0; }},
}};

Points CurveOf(const Shape& shape)
{
    Points curve;
    for (int i = 0; i < kSamples; ++i) {
        const double x = i * (static_cast<double>(kWidth) / kSamples);
        curve.push_back({x, shape.Height(i, x)});
    }
    return curve;
}

QImage Sheet()
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

void ThroughSurface(benchmark::State& state, const Shape& shape, kelvane::Antialias smooth)
{
    const Points curve = CurveOf(shape);
    QImage image = Sheet();
    kelvane::QtSurface surface(image, {kWidth, kHeight}, {smooth, 1});
    surface.SetLineWidth(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        for (std::size_t i = 1; i < curve.size(); ++i)
            surface.Line(curve[i - 1], curve[i], {0, 0, 255});
        surface.Finish();
    }
    state.counters["painting_ms"] =
        benchmark::Counter(surface.PaintSeconds() * 1000, benchmark::Counter::kAvgIterations);
}

void WholePolygon(benchmark::State& state, const Shape& shape)
{
    QPolygonF polygon;
    for (const PixelPoint& point : CurveOf(shape))
        polygon.append({point.X + 0.5, point.Y + 0.5});
    QImage image = Sheet();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::blue, static_cast<double>(state.range(0)), Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    for ([[maybe_unused]] auto _ : state)
        painter.drawPolyline(polygon);
}

void Register()
{
    for (const Shape& shape : kShapes) {
        const std::string name = shape.Name;
        for (const auto& [suffix, smooth] : {std::pair("/smooth", kelvane::Antialias::On),
                                             std::pair("/sharp", kelvane::Antialias::Off)})
            benchmark::RegisterBenchmark((name + "/surface" + suffix).c_str(), ThroughSurface,
                                         shape, smooth)
                ->Arg(1)
                ->Arg(3)
                ->Arg(10)
                ->Unit(benchmark::kMillisecond);
    }
    // Wide oscillations take Qt minutes, so only the smooth curve is compared at each width.
    for (const Shape& shape : kShapes) {
        auto* whole = benchmark::RegisterBenchmark((std::string(shape.Name) + "/whole").c_str(),
                                                   WholePolygon, shape);
        whole->Arg(1)->Unit(benchmark::kMillisecond);
        if (&shape == kShapes.data())
            whole->Arg(3);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    Register();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
