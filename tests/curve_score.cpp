#include <QGuiApplication>
#include <QImage>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>

#include "ui/curve_cases.h"
#include "ui/curve_picture.h"

// The scoreboard of complete curves: draws every equation of the tables, or those of which a part
// of the text is given, and prints a line for each, failures marked.
//
//   curve_score [--pictures DIRECTORY] [--brief] [TEXT]
//
// With a directory, writes the truth, the drawn picture and their difference there: black is right,
// red is missing, blue is invented.

namespace kelvane {
namespace {

struct Order {
    std::string Pictures; // directory; empty for none
    std::string Text;
    bool Brief = false; // failures only
    int Failures = 0;
    int Number = 0;
};

// Of this process: other processes do not count.
double Seconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void WritePictures(const Order& order, const CurveTruth& truth, const CurvePicture& picture)
{
    const TruthWindow& window = picture.Window;
    QImage images[3];
    for (QImage& image : images) {
        image = QImage(window.Width, window.Height, QImage::Format_RGB32);
        image.fill(Qt::white);
    }
    for (int row = 0; row < window.Height; ++row)
        for (int column = 0; column < window.Width; ++column) {
            const int at = row * window.Width + column;
            const bool isTrue = truth.MarkAt(column, row) == TruthMark::On;
            const bool isDrawn = picture.Ink[static_cast<std::size_t>(at)] != 0;
            if (isTrue)
                images[0].setPixelColor(column, row, Qt::black);
            if (isDrawn)
                images[1].setPixelColor(column, row, Qt::black);
            if (isTrue || isDrawn)
                images[2].setPixelColor(column, row,
                                        isTrue && isDrawn ? Qt::black
                                        : isTrue          ? Qt::red
                                                          : Qt::blue);
        }
    const char* const names[] = {"truth", "drawn", "difference"};
    for (int i = 0; i < 3; ++i)
        images[i].save(QString::fromStdString(order.Pictures) +
                       QString("/%1_%2.png").arg(order.Number, 3, 10, QChar('0')).arg(names[i]));
}

void Score(Order& order, const CurveCase& test, const CurveTruth& truth, CalcMode mode)
{
    const CurvePicture picture = DrawCurve(test, mode, 2);
    const TruthScore score = ScoreAgainst(truth, picture.Ink);
    const bool fails = score.Found < 0.995 || score.Right < 0.995 || !picture.Trouble.empty() ||
                       (score.TruthPixels > 0) != (score.DrawnPixels > 0) ||
                       picture.UnresolvedPixels > 4000;
    order.Failures += fails ? 1 : 0;
    if (fails || !order.Brief)
        std::printf("%3d %s found %6.2f%% right %6.2f%% true %6lld drawn %6lld unresolved %6lld "
                    "%5.2f s  %s%s [%g:%g at %g,%g] %s\n",
                    order.Number, fails ? "FAIL" : "ok  ", score.Found * 100, score.Right * 100,
                    static_cast<long long>(score.TruthPixels),
                    static_cast<long long>(score.DrawnPixels),
                    static_cast<long long>(picture.UnresolvedPixels), picture.Seconds,
                    mode == CalcMode::Simple ? "S " : "A ", test.Equation.c_str(), test.View.XLow,
                    test.View.XHigh, test.View.CenterX, test.View.CenterY, picture.Trouble.c_str());
    std::fflush(stdout);
    if (!order.Pictures.empty())
        WritePictures(order, truth, picture);
}

void ScoreAll(Order& order, const CurveCases& tests, const char* name)
{
    std::printf("--- %s\n", name);
    double truths = 0;
    const double begin = Seconds();
    for (const CurveCase& test : tests) {
        ++order.Number;
        if (test.Equation.find(order.Text) == std::string::npos)
            continue;
        CurveTruth truth(WindowOf(test));
        const double start = Seconds();
        test.Mark(truth);
        truths += Seconds() - start;
        Score(order, test, truth, CalcMode::Advanced);
        if (IsGraph(test))
            Score(order, test, truth, CalcMode::Simple);
    }
    std::printf("    (%.1f s of processor time, truths %.1f s)\n", Seconds() - begin, truths);
}

} // namespace
} // namespace kelvane

int main(int argc, char** argv)
{
    using namespace kelvane;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    Order order;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--brief")
            order.Brief = true;
        else if (argument == "--pictures" && i + 1 < argc)
            order.Pictures = argv[++i];
        else
            order.Text = argument;
    }
    ScoreAll(order, KnownGraphs(), "known graphs");
    ScoreAll(order, KnownImplicit(), "known implicit");
    ScoreAll(order, SpikesAndJumps(), "spikes and jumps");
    ScoreAll(order, Touches(), "touches");
    ScoreAll(order, AreasAndIdentities(), "areas and identities");
    ScoreAll(order, PolesAndEdges(), "poles and edges");
    ScoreAll(order, KnotsAndCusps(), "knots and cusps");
    ScoreAll(order, Networks(), "networks");
    ScoreAll(order, DeepViews(), "deep views");
    ScoreAll(order, Labyrinths(), "labyrinths");
    ScoreAll(order, BeyondReach(), "beyond reach");
    std::printf("%d failures\n", order.Failures);
    return order.Failures == 0 ? 0 : 1;
}
