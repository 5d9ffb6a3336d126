#include "view3d/view_matrix.h"

namespace kelvane {

bool IsIdentity2D(const Matrix3& matrix)
{
    return matrix[0] == 1 && matrix[1] == 0 && matrix[3] == 0 && matrix[4] == 1;
}

bool IsIdentity3D(const Matrix3& matrix)
{
    return matrix == kIdentity;
}

std::pair<float, float> Transform2D(const Matrix3& matrix, float x, float y)
{
    return {matrix[0] * x + matrix[1] * y, matrix[3] * x + matrix[4] * y};
}

} // namespace kelvane
