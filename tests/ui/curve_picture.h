#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/calculation_modes.h"
#include "ui/curve_cases.h"
#include "ui/curve_truth.h"

namespace kelvane {

inline constexpr int kCurvePictureWidth = 1000;
inline constexpr int kCurvePictureHeight = 800;

// A case as the program draws it with the second family: on a bare white sheet, pen width 1.
struct CurvePicture {
    TruthWindow Window;
    std::vector<std::uint8_t> Ink; // 1 where there is at least a quarter of the pen's colour;
                                   // the hatching does not count
    std::int64_t UnresolvedPixels = 0;
    double Seconds = 0;
    std::string Trouble; // what the program said, or that it did not complete
};

CurvePicture DrawCurve(const CurveCase& test, CalcMode mode, double budgetSeconds);

// What the picture of a case shows of the plane.
TruthWindow WindowOf(const CurveCase& test);

} // namespace kelvane
