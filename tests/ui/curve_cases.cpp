#include "ui/curve_cases.h"

#include <cmath>
#include <limits>
#include <numbers>

// The truths are closed forms wherever there is one, by other formulas than the equations; the
// rest is left to samples.

namespace kelvane {

namespace {

using std::abs;
using std::atan;
using std::cos;
using std::exp;
using std::log;
using std::pow;
using std::sin;
using std::sqrt;
using std::tan;
using std::numbers::pi;

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();
constexpr double kE = 2.718282F; // as the program knows it

using Truth = std::function<void(CurveTruth&)>;

Truth Graph(const LineFunction& g)
{
    return [g](CurveTruth& truth) { truth.Graph(g); };
}

Truth AlongY(const LineFunction& g)
{
    return [g](CurveTruth& truth) { truth.GraphAlongY(g); };
}

Truth Path(const LineFunction& x, const LineFunction& y, double from, double to)
{
    return [=](CurveTruth& truth) { truth.Path(x, y, from, to); };
}

// r(angle) for angles from 0 to a multiple of pi.
Truth Polar(const LineFunction& r, double turns)
{
    return Path([r](double t) { return r(t) * cos(t); }, [r](double t) { return r(t) * sin(t); }, 0,
                turns * pi);
}

Truth Circle(double radius)
{
    return Polar([radius](double) { return radius; }, 2);
}

Truth Levels(const PlaneFunction& g, const PlaneTest& test = nullptr)
{
    return [=](CurveTruth& truth) { truth.Levels(g, test); };
}

Truth Zeros(const PlaneFunction& f)
{
    return [f](CurveTruth& truth) { truth.Zeros(f); };
}

Truth Area(const PlaneTest& test)
{
    return [test](CurveTruth& truth) { truth.Area(test); };
}

Truth Point(double x, double y, TruthMark mark = TruthMark::On)
{
    return [=](CurveTruth& truth) { truth.Point(x, y, mark); };
}

// The points (x + i stepX, y + j stepY).
Truth Grid(double x, double stepX, double y, double stepY)
{
    return [=](CurveTruth& truth) {
        for (int i = -30; i <= 30; ++i)
            for (int j = -30; j <= 30; ++j)
                truth.Point(x + i * stepX, y + j * stepY);
    };
}

Truth All(const std::vector<Truth>& parts)
{
    return [parts](CurveTruth& truth) {
        for (const Truth& part : parts)
            part(truth);
    };
}

Truth Nothing()
{
    return [](CurveTruth&) {};
}

Truth Everything()
{
    return Area([](double, double) { return true; });
}

Truth Constant(double y)
{
    return Graph([y](double) { return y; });
}

Truth Upright(double x)
{
    return AlongY([x](double) { return x; });
}

CurveView Units(double half)
{
    return {-half, half};
}

CurveView Range(double x0, double x1, double y0, double y1)
{
    return {x0, x1, y0, y1};
}

// So far to the left and right of a centre.
CurveView Around(double x, double y, double half)
{
    return {-half, half, -half * 0.8, half * 0.8, x, y};
}

double Ratio(double a, double b)
{
    return b == 0 ? kNoValue : a / b;
}

double Cube(double a)
{
    return a * a * a;
}

double SignedRoot(double a, double degree)
{
    return std::copysign(pow(abs(a), 1 / degree), a);
}

} // namespace

bool IsGraph(const CurveCase& test)
{
    return test.Equation.rfind("y=", 0) == 0 && test.Equation.find('y', 1) == std::string::npos;
}

CurveCases KnownGraphs()
{
    return {
        {"y=sin(40/x)", {}, Graph([](double x) { return sin(Ratio(40, x)); })},
        {"y=sin(x)/x", {}, Graph([](double x) { return x == 0 ? 1 : sin(x) / x; })},
        {"y=(x^(0.5))^2", {}, Graph([](double x) { return x < 0 ? kNoValue : x; })},
        {"y=(x-3)^(0.5)*(1-x)^(0.5)", {}, Nothing()},
        {"y=1/x^2", {}, Graph([](double x) { return Ratio(1, x * x); })},
        {"y=abs(x)/x", {}, Graph([](double x) { return Ratio(abs(x), x); })},
        {"y=atan(1/x)", {}, Graph([](double x) { return atan(Ratio(1, x)); })},
        {"y=tan(10*x)", {}, Graph([](double x) { return tan(10 * x); })},
        {"y=log(abs(sin(x)))", {}, Graph([](double x) { return log(abs(sin(x))); })},
    };
}

CurveCases KnownImplicit()
{
    return {
        {"81-x^2-y^2=abs(81-x^2-y^2)", {}, Area([](double x, double y) {
             return std::hypot(x, y) <= 9;
         })},
        {"(x^2+y^2-25)^2=0", {}, Circle(5)},
        {"tan(y)=tan(x)", {}, Levels([](double x, double y) { return (y - x) / pi; })},
        {"sin(x^2+y^2)=cos(x*y)",
         {},
         All({Levels([](double x, double y) { return (x * x + y * y + x * y) / (2 * pi) - 0.25; }),
              Levels(
                  [](double x, double y) { return (x * x + y * y - x * y) / (2 * pi) - 0.25; })})},
        {"abs(sin(x^2+2*x*y))=sin(x-2*y)",
         {},
         All({Levels([](double x, double y) { return (x * x + 2 * x * y - x + 2 * y) / pi; },
                     [](double x, double y) { return sin(x - 2 * y) > -0.01; }),
              Levels([](double x, double y) { return (x * x + 2 * x * y + x - 2 * y) / pi; },
                     [](double x, double y) { return sin(x - 2 * y) > -0.01; })})},
        {"y^2=x^3-x^2",
         {},
         All({Path([](double t) { return t * t + 1; }, [](double t) { return t * (t * t + 1); }, -4,
                   4),
              Point(0, 0)})},
        {"x*y=0", {}, All({Constant(0), Upright(0)})},
        {"(x^2+y^2)^2=x^2-y^2",
         {},
         Path([](double t) { return cos(t) / (1 + sin(t) * sin(t)); },
              [](double t) { return sin(t) * cos(t) / (1 + sin(t) * sin(t)); }, 0, 2 * pi)},
        {"y^2=x^3",
         {},
         Path([](double t) { return t * t; }, [](double t) { return t * t * t; }, -4, 4)},
        {"x^3+y^3=3*x*y",
         {},
         Polar([](double t) { return 3 * sin(t) * cos(t) / (pow(sin(t), 3) + pow(cos(t), 3)); },
               1)},
        {"(x^2+y^2-1)^3=x^2*y^3", Units(2),
         Zeros([](double x, double y) { return Cube(x * x + y * y - 1) - x * x * Cube(y); })},
        {"x^2+y^2=0", {}, Point(0, 0)},
        {"x^2+y^2=-1", {}, Nothing()},
        {"x-x=0", {}, Everything()},
        {"1/x=1/(y-1)", {}, Graph([](double x) { return x + 1; })},
    };
}

CurveCases SpikesAndJumps()
{
    return {
        {"y=sin(e^x)", {}, Graph([](double x) { return sin(pow(kE, x)); })},
        {"y=x^x",
         {},
         All({Graph([](double x) { return x < 0 ? kNoValue : pow(x, x); }),
              Point(-1, -1, TruthMark::Allowed), Point(-2, 0.25, TruthMark::Allowed),
              Point(-3, -1.0 / 27, TruthMark::Allowed)})},
        {"y=1/(x-1)^9", {}, Graph([](double x) { return Ratio(1, pow(x - 1, 9)); })},
        {"y=tan(1/x)", {}, Graph([](double x) { return tan(Ratio(1, x)); })},
        {"y=atan(tan(x))", {}, Graph([](double x) { return std::remainder(x, pi); })},
        {"y=asin(sin(x))", {}, Graph([](double x) { return std::asin(sin(x)); })},
        {"y=acos(cos(3*x))", {}, Graph([](double x) { return std::acos(cos(3 * x)); })},
        {"y=atan(1/x)+atan(1/(x-2))*3", {}, Graph([](double x) {
             return atan(Ratio(1, x)) + 3 * atan(Ratio(1, x - 2));
         })},
        {"y=sin(5*x)/abs(sin(5*x))", {}, Graph([](double x) {
             return Ratio(sin(5 * x), abs(sin(5 * x)));
         })},
        {"y=log(log(abs(x)))", {}, Graph([](double x) { return log(log(abs(x))); })},
        {"y=abs(abs(abs(x)-4)-2)", {}, Graph([](double x) { return abs(abs(abs(x) - 4) - 2); })},
        {"y=((x-1)*(x-2)*(x-3))^(0.5)", {}, Graph([](double x) {
             return sqrt((x - 1) * (x - 2) * (x - 3));
         })},
        {"y=sin(x)+sin(10*x)/10+sin(100*x)/100", {}, Graph([](double x) {
             return sin(x) + sin(10 * x) / 10 + sin(100 * x) / 100;
         })},
        {"y=1/sin(x)", {}, Graph([](double x) { return Ratio(1, sin(x)); })},
        {"y=5/(1+(5000*(x-1))^2)", {}, Graph([](double x) {
             return 5 / (1 + pow(5000 * (x - 1), 2));
         })},
        {"y=4*cos(x)^1000", {}, Graph([](double x) { return 4 * pow(cos(x), 1000); })},
        {"y=3*sin(1000*x)", {}, Graph([](double x) { return 3 * sin(1000 * x); })},
        {"y=log(x^2)/log(abs(x))", {}, Constant(2)},
        {"y=sin(x)^2+cos(x)^2", {}, Constant(1)},
        {"y=(x^2-1)/(x-1)", {}, Graph([](double x) { return x + 1; })},
        {"y=(x/e)^x*(2*p*x)^(0.5)",
         {},
         All({Graph([](double x) { return pow(x / kE, x) * sqrt(2 * pi * x); })})},
        {"y=abs(x)^(0.01)",
         {},
         All({Graph([](double x) { return pow(abs(x), 0.01); }),
              Path([](double) { return 0; }, [](double t) { return t; }, 0, 0.9)})},
        {"y=x*sin(100/x)", {}, Graph([](double x) { return x * sin(Ratio(100, x)); })},
        {"y=tan(x)^9", {}, Graph([](double x) { return pow(tan(x), 9); })},
        {"y=e^(e^(e^x))", {}, Graph([](double x) { return pow(kE, pow(kE, pow(kE, x))); })},
        {"y=1/(x^2-2)+1/(x^2-2.0001)",
         {},
         All({Graph([](double x) { return Ratio(1, x * x - 2) + Ratio(1, x * x - 2.0001); }),
              Upright(sqrt(2.0)), Upright(-sqrt(2.0))})},
    };
}

CurveCases Touches()
{
    return {
        {"x^2+y^2=0.0001", {}, Circle(0.01)},
        {"(x^2+y^2-25)^2+0.01=0", {}, Nothing()},
        {"(x^2+y^2-25)^2=0.0001", {}, All({Circle(sqrt(25.01)), Circle(sqrt(24.99))})},
        {"sin(x*y)=1", {}, Levels([](double x, double y) { return x * y / (2 * pi) - 0.25; })},
        {"sin(x*y)=1.0001", {}, Nothing()},
        {"cos(x)+cos(y)=2", {}, Grid(0, 2 * pi, 0, 2 * pi)},
        {"cos(x)*cos(y)=1", {}, All({Grid(0, 2 * pi, 0, 2 * pi), Grid(pi, 2 * pi, pi, 2 * pi)})},
        {"sin(x)^2+sin(y)^2=0", {}, Grid(0, pi, 0, pi)},
        {"abs(sin(x))+abs(cos(y))=0", {}, Grid(0, pi, pi / 2, pi)},
        {"(x^2-1)^2+(y^2-1)^2=0",
         {},
         All({Point(1, 1), Point(1, -1), Point(-1, 1), Point(-1, -1)})},
        {"abs(x^2+y^2-16)=0", {}, Circle(4)},
        {"abs(y-sin(3*x))=0", {}, Graph([](double x) { return sin(3 * x); })},
        {"(y-sin(3*x))^4=0", {}, Graph([](double x) { return sin(3 * x); })},
        {"abs(x-y)+abs(x+y-2)=0", {}, Point(1, 1)},
        {"(1-x^2-y^2)^(0.5)=0", Units(2), Circle(1)},
        {"x^2+2*x*y+y^2=0", {}, Graph([](double x) { return -x; })},
        {"sin(x^2+y^2)^2=1", {}, Levels([](double x, double y) {
             return (x * x + y * y) / pi - 0.5;
         })},
        {"e^(x^2+y^2)=1", {}, Point(0, 0)},
        {"(x^2+y^2-4)^2+(x*y-1)^2=0",
         {},
         All({Point(sqrt(2 + sqrt(3)), sqrt(2 - sqrt(3))),
              Point(sqrt(2 - sqrt(3)), sqrt(2 + sqrt(3))),
              Point(-sqrt(2 + sqrt(3)), -sqrt(2 - sqrt(3))),
              Point(-sqrt(2 - sqrt(3)), -sqrt(2 + sqrt(3)))})},
        {"asin(x)+acos(x)=p/2", Units(2), Nothing()}, // p is less than pi
    };
}

CurveCases AreasAndIdentities()
{
    return {
        {"sin(x)^2+cos(x)^2=1", {}, Everything()},
        {"x/x=1", {}, Everything()},
        {"x*(y+1)-x*y=x", {}, Everything()},
        {"x+abs(x)=y+abs(y)", {}, Area([](double x, double y) {
             return (x <= 0 && y <= 0) || (x > 0 && abs(x - y) < 0.005);
         })},
        {"abs(x+y)+abs(x-y)=2*abs(x)", {}, Area([](double x, double y) {
             return abs(y) <= abs(x);
         })},
        {"x/abs(x)+y/abs(y)=0", {}, Area([](double x, double y) { return x * y < 0; })},
        {"y=abs(y)", {}, Area([](double, double y) { return y >= 0; })},
        {"abs(x)+abs(y)=5",
         {},
         All({Graph([](double x) { return abs(x) > 5 ? kNoValue : 5 - abs(x); }),
              Graph([](double x) { return abs(x) > 5 ? kNoValue : abs(x) - 5; })})},
        {"abs(sin(x))=sin(x)", {}, Area([](double x, double) { return sin(x) >= 0; })},
        {"abs(x-y)+abs(x+y)=4", {}, Area([](double x, double y) {
             return abs(std::max(abs(x), abs(y)) - 2) < 0.005;
         })},
        {"abs(x^2+y^2-4)+abs(x^2+y^2-16)=12", {}, Area([](double x, double y) {
             return std::hypot(x, y) >= 2 && std::hypot(x, y) <= 4;
         })},
        {"(x^2)^(0.5)=x", {}, Area([](double x, double) { return x >= 0; })},
        {"atan(tan(x))=x", {}, Area([](double x, double) { return abs(x) < pi / 2; })},
        {"abs(sin(x)*sin(y))=sin(x)*sin(y)", {}, Area([](double x, double y) {
             return sin(x) * sin(y) >= 0;
         })},
        {"(x-1)^(0.5)-(x-1)^(0.5)=0", {}, Area([](double x, double) { return x >= 1; })},
    };
}

CurveCases PolesAndEdges()
{
    return {
        {"y^2=tan(x)", {}, All({Graph([](double x) { return sqrt(tan(x)); }), Graph([](double x) {
                                    return -sqrt(tan(x));
                                })})},
        {"y*sin(x)=1", {}, Graph([](double x) { return Ratio(1, sin(x)); })},
        {"x*tan(y)=y", {}, All({AlongY([](double y) { return Ratio(y, tan(y)); }), Constant(0)})},
        {"log(x*y)=y", {}, AlongY([](double y) { return Ratio(exp(y), y); })},
        {"tan(x)*tan(y)=1", {}, Levels([](double x, double y) { return (x + y) / pi - 0.5; })},
        {"tan(x*y)=1", {}, Levels([](double x, double y) { return x * y / pi - 0.25; })},
        {"1/(x*y)=1", {}, Graph([](double x) { return Ratio(1, x); })},
        {"1/sin(x)=1/sin(y)",
         {},
         All({Levels([](double x, double y) { return (x - y) / (2 * pi); }),
              Levels([](double x, double y) { return (x + y) / (2 * pi) - 0.5; })})},
        {"log(abs(x))+log(abs(y))=0",
         {},
         All({Graph([](double x) { return Ratio(1, x); }),
              Graph([](double x) { return Ratio(-1, x); })})},
        {"atan(x/y)=1", {}, Graph([](double x) { return x / tan(1); })},
        {"x^((2/3))+y^((2/3))=4",
         {},
         Path([](double t) { return 8 * pow(cos(t), 3); },
              [](double t) { return 8 * pow(sin(t), 3); }, 0, pi / 2)},
        {"log(x)^2+log(y)^2=1",
         {},
         Path([](double t) { return exp(cos(t)); }, [](double t) { return exp(sin(t)); }, 0,
              2 * pi)},
        {"asin(x)+acos(y)=1", Units(2), AlongY([](double y) {
             const double angle = 1 - std::acos(y);
             return abs(angle) <= pi / 2 ? sin(angle) : kNoValue;
         })},
        {"1/(x^2+y^2-9)+1/(x-y)=0", {}, Zeros([](double x, double y) {
             return x * x + y * y - 9 + x - y;
         })},
        {"(y-x)/(x^2+y^2-9)=0", {}, Graph([](double x) { return x; })},
        {"e^(1/x)=y", {}, Graph([](double x) { return pow(kE, Ratio(1, x)); })},
        {"x^y=y^x",
         {},
         All({Zeros([](double x, double y) {
                  return x <= 0 || y <= 0 ? kNoValue : (log(x) / x - log(y) / y) * x * y;
              }),
              [](CurveTruth& truth) {
                  for (int i = -10; i < 0; ++i)
                      truth.Point(i, i, TruthMark::Allowed);
                  truth.Point(-2, -4, TruthMark::Allowed);
                  truth.Point(-4, -2, TruthMark::Allowed);
              }})},
        {"x^x+y^y=4", Units(4), Zeros([](double x, double y) {
             return x <= 0 || y <= 0 ? kNoValue : pow(x, x) + pow(y, y) - 4;
         })},
    };
}

CurveCases KnotsAndCusps()
{
    return {
        {"x^4+y^4=1", Units(2),
         Zeros([](double x, double y) { return x * x * x * x + y * y * y * y - 1; })},
        {"x^50+y^50=1", Units(2),
         All({Graph([](double x) { return pow(1 - pow(x, 50), 0.02); }),
              Graph([](double x) { return -pow(1 - pow(x, 50), 0.02); }),
              AlongY([](double y) { return pow(1 - pow(y, 50), 0.02); }),
              AlongY([](double y) { return -pow(1 - pow(y, 50), 0.02); })})},
        {"x^5+y^5=1", Units(4), Graph([](double x) { return SignedRoot(1 - pow(x, 5), 5); })},
        {"(x^2+y^2)^3=4*x^2*y^2", Units(2), Polar([](double t) { return sin(2 * t); }, 2)},
        {"x^6+y^6=x^2", Units(2),
         All({Graph([](double x) { return SignedRoot(sqrt(x * x - pow(x, 6)), 3); }),
              Graph([](double x) { return -SignedRoot(sqrt(x * x - pow(x, 6)), 3); })})},
        {"(x^2+y^2)^2=x^3-3*x*y^2", Units(2), Polar([](double t) { return cos(3 * t); }, 2)},
        {"((x-1)^2+y^2)*((x+1)^2+y^2)=1", Units(2),
         Path([](double t) { return sqrt(2.0) * cos(t) / (1 + sin(t) * sin(t)); },
              [](double t) { return sqrt(2.0) * sin(t) * cos(t) / (1 + sin(t) * sin(t)); }, 0,
              2 * pi)},
        {"((x-1)^2+y^2)*((x+1)^2+y^2)=1.0001", Units(2), Zeros([](double x, double y) {
             return ((x - 1) * (x - 1) + y * y) * ((x + 1) * (x + 1) + y * y) - 1.0001F;
         })},
        {"(y-x^2)^2=x^5", Units(2),
         Path([](double t) { return t * t; }, [](double t) { return pow(t, 4) + pow(t, 5); }, -2,
              2)},
        {"y^2*(2-x)=x^3",
         {},
         Path([](double t) { return 2 * sin(t) * sin(t); },
              [](double t) { return 2 * pow(sin(t), 3) / cos(t); }, -pi / 2, pi / 2)},
        {"(x^2+y^2)*(x-2)^2=x^2",
         {},
         All({Polar([](double t) { return 2 / cos(t) + 1; }, 2), Point(0, 0)})},
        {"y^4-4*y^2=x^4-9*x^2", {}, Zeros([](double x, double y) {
             return y * y * (y * y - 4) - x * x * (x * x - 9);
         })},
        {"(x^2+y^2-9)*(x-y)^2*(y-x^2)=0",
         {},
         All({Circle(3), Graph([](double x) { return x; }),
              Graph([](double x) { return x * x; })})},
        {"(x-1)*(x-2)*(x-3)*(y-1)*(y-2)*(y-3)*(x+y)=0",
         {},
         All({Upright(1), Upright(2), Upright(3), Constant(1), Constant(2), Constant(3),
              Graph([](double x) { return -x; })})},
        {"y^3=x", {}, Graph([](double x) { return SignedRoot(x, 3); })},
        {"y*abs(y)=x", {}, Graph([](double x) { return SignedRoot(x, 2); })},
        {"y^2=x^4-x^6", Units(2),
         All({Graph([](double x) { return x * x * sqrt(1 - x * x); }),
              Graph([](double x) { return -x * x * sqrt(1 - x * x); })})},
        {"x^4=x^2*y-y^3", Units(2),
         Path([](double t) { return t - t * t * t; }, [](double t) { return t * t - pow(t, 4); },
              -3, 3)},
    };
}

CurveCases Networks()
{
    return {
        {"sin(100*x*y)=0", {}, Levels([](double x, double y) { return 100 * x * y / pi; })},
        {"sin(10*x*y)=0", {}, Levels([](double x, double y) { return 10 * x * y / pi; })},
        {"sin(x)=sin(y)",
         {},
         All({Levels([](double x, double y) { return (x - y) / (2 * pi); }),
              Levels([](double x, double y) { return (x + y) / (2 * pi) - 0.5; })})},
        {"sin(x^2)*sin(y^2)=0",
         {},
         All({Levels([](double x, double) { return x * x / pi - 1e-9; }),
              Levels([](double, double y) { return y * y / pi - 1e-9; }), Constant(0),
              Upright(0)})},
        {"e^(x*y)=x+y+2", {}, Zeros([](double x, double y) { return pow(kE, x * y) - x - y - 2; })},
        {"sin(x^2+y^2)=0.5",
         {},
         All({Levels([](double x, double y) { return (x * x + y * y) / (2 * pi) - 1.0 / 12; }),
              Levels([](double x, double y) { return (x * x + y * y) / (2 * pi) - 5.0 / 12; })})},
        {"x^3-x=0", {}, All({Upright(-1), Upright(0), Upright(1)})},
        {"sin(1/x)=sin(1/y)", Units(1),
         All({Levels([](double x, double y) { return (1 / x - 1 / y) / (2 * pi); }),
              Levels([](double x, double y) { return (1 / x + 1 / y) / (2 * pi) - 0.5; })})},
        {"tan(x^2+y^2)=1", {}, Levels([](double x, double y) {
             return (x * x + y * y) / pi - 0.25;
         })},
        {"sin(e^x)=sin(y)",
         {},
         All({Levels([](double x, double y) { return (pow(kE, x) - y) / (2 * pi); }),
              Levels([](double x, double y) { return (pow(kE, x) + y) / (2 * pi) - 0.5; })})},
    };
}

CurveCases DeepViews()
{
    return {
        {"y=sin(1/x)", Range(-1e-3, 1e-3, -1.5, 1.5),
         Graph([](double x) { return sin(Ratio(1, x)); })},
        {"y=x*sin(1/x)", Units(0.01), Graph([](double x) { return x * sin(Ratio(1, x)); })},
        {"y=x^2", Range(0, 1000, 0, 1e6), Graph([](double x) { return x * x; })},
        {"y=x^2", Around(3, 9, 5e-4), Graph([](double x) { return x * x; })},
        {"y=sin(x)", Range(-500, 500, -2, 2), Graph([](double x) { return sin(x); })},
        {"x*y=1", Units(1000), Graph([](double x) { return Ratio(1, x); })},
        {"x^2+y^2=25", Around(3, 4, 5e-4), Graph([](double x) { return sqrt(25 - x * x); })},
        {"(x^2+y^2-25)^2=0", Around(3, 4, 5e-4), Graph([](double x) { return sqrt(25 - x * x); })},
        {"y^2=x^3", Range(-1e-3, 1e-3, -4e-5, 4e-5),
         All({Graph([](double x) { return sqrt(x * x * x); }),
              Graph([](double x) { return -sqrt(x * x * x); })})},
        {"(x-y)*(x+y)=0", Units(5e-4),
         All({Graph([](double x) { return x; }), Graph([](double x) { return -x; })})},
        {"x^3+y^3=3*x*y", Units(1e-3),
         Polar([](double t) { return 3 * sin(t) * cos(t) / (pow(sin(t), 3) + pow(cos(t), 3)); },
               1)},
        {"x^2+y^2=1000000", Units(2000), Circle(1000)},
        {"y=tan(x)", Around(1.5707963, 0, 5e-4), Graph([](double x) { return tan(x); })},
        {"sin(x*y)=1", Around(100, 50, 1),
         Levels([](double x, double y) { return x * y / (2 * pi) - 0.25; })},
        {"y=x^3-x", Range(-1e-3, 1e-3, -1, 1), Graph([](double x) { return x * x * x - x; })},
        {"y=log(x)", Range(0, 1e-3, -20, 0), Graph([](double x) { return log(x); })},
        {"abs(x)+abs(y)=1", Around(1, 0, 5e-4), AlongY([](double y) { return 1 - abs(y); })},
        {"x^2-y^2=0.00000001", Units(1e-3),
         All({AlongY([](double y) { return sqrt(1e-8 + y * y); }),
              AlongY([](double y) { return -sqrt(1e-8 + y * y); })})},
        {"y=sin(e^x)", Around(9, 0, 0.01), Graph([](double x) { return sin(pow(kE, x)); })},
        {"y=e^x", Range(-20, 20, 0, 1e8), Graph([](double x) { return pow(kE, x); })},
    };
}

CurveCases Labyrinths()
{
    return {
        {"sin(x)+sin(2*y)+sin(3*x*y)=0", {}, Zeros([](double x, double y) {
             return sin(x) + sin(2 * y) + sin(3 * x * y);
         })},
        {"cos(x)+cos(y)+cos(2*x+y)+cos(x-3*y)=0", {}, Zeros([](double x, double y) {
             return cos(x) + cos(y) + cos(2 * x + y) + cos(x - 3 * y);
         })},
        {"sin(sin(x)+cos(y))=cos(sin(x*y)+cos(x))", {}, Zeros([](double x, double y) {
             return sin(sin(x) + cos(y)) - cos(sin(x * y) + cos(x));
         })},
        {"y=sin(x+cos(y*x))", {}, Zeros([](double x, double y) {
             return y - sin(x + cos(y * x));
         })},
        {"x*sin(y)=y*cos(x)", {}, Zeros([](double x, double y) {
             return x * sin(y) - y * cos(x);
         })},
        {"y*sin(x*y)=x", {}, Zeros([](double x, double y) { return y * sin(x * y) - x; })},
        {"abs(sin(x))+abs(sin(y))=1", {}, Zeros([](double x, double y) {
             return abs(sin(x)) + abs(sin(y)) - 1;
         })},
    };
}

CurveCases BeyondReach()
{
    return {
        {"y=1/e^(1/x^2)", Units(2), Graph([](double x) { return exp(-1 / (x * x)); })},
        {"log(e^x)=x", {}, Upright(0)}, // e is not quite the base
    };
}

} // namespace kelvane
