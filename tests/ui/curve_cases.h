#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/curve_truth.h"

// Equations, what of the plane is shown of them, and what is to be seen there.

namespace kelvane {

// Ranges of x and y, edge to edge, measured from a centre to which the view is moved. Where the
// range of y is empty, units are equal and y = 0 is in the middle.
struct CurveView {
    double XLow = -10;
    double XHigh = 10;
    double YLow = 0;
    double YHigh = 0;
    double CenterX = 0;
    double CenterY = 0;
};

struct CurveCase {
    std::string Equation;
    CurveView View;
    std::function<void(CurveTruth&)> Mark; // marks the true curve
};

// Whether it is y = g(x), which can be drawn in Simple mode too.
bool IsGraph(const CurveCase& test);

using CurveCases = std::vector<CurveCase>;

CurveCases KnownGraphs();    // y = g(x) that many plotters draw wrongly
CurveCases KnownImplicit();  // the same of other equations
CurveCases SpikesAndJumps(); // and dense oscillation, y = g(x)
CurveCases Touches();        // no change of sign, isolated points, and what comes near
CurveCases AreasAndIdentities();
CurveCases PolesAndEdges(); // implicit, and where the domain ends
CurveCases KnotsAndCusps(); // algebraic curves
CurveCases Networks();      // many branches
CurveCases DeepViews();     // far in, far out, off the centre, unequal units

// Not for tests: the first take long to judge, the others need not be drawn wholly in time.
CurveCases Labyrinths();
CurveCases BeyondReach();

} // namespace kelvane
