#include "view3d/matrix_setup.h"

#include <array>
#include <cassert>
#include <charconv>
#include <cmath>

#include "view3d/typed_number.h"

namespace kelvane {

namespace {

std::string EntryText(float value)
{
    if (value == 0)
        return "0";
    std::array<char, 32> text;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

// The nearest single, nothing if it would not be finite.
std::optional<float> ToSingle(double value)
{
    constexpr double kTooLarge = 0x1.ffffffp127; // half way from the largest single to 2^128
    if (!(std::abs(value) < kTooLarge))
        return std::nullopt;
    return static_cast<float>(value);
}

// Computes single entries of a result; texts are read where an entry needs them, not before.
class Operands {
public:
    Operands(std::span<const std::string> typed, std::span<const std::string> current,
             std::size_t order)
        : m_typed(typed)
        , m_current(current)
        , m_order(order)
    {
    }

    std::optional<float> Sum(std::size_t k)
    {
        m_fault = k;
        const auto t = ReadTyped(m_typed[k]);
        const auto c = ReadTyped(m_current[k]);
        return t && c ? ToSingle(*t + *c) : std::nullopt;
    }

    std::optional<float> Product(std::size_t k)
    {
        const std::size_t row = k % m_order;
        const std::size_t column = k / m_order;
        double sum = 0;
        double largest = -1;
        for (std::size_t j = 0; j < m_order; ++j) {
            const std::size_t box = j * m_order + row;
            const auto t = ReadTyped(m_typed[box]);
            const auto c = ReadTyped(m_current[column * m_order + j]);
            if (!t || !c) {
                m_fault = box;
                return std::nullopt;
            }
            sum += *t * *c;
            if (std::abs(*t * *c) > largest) {
                largest = std::abs(*t * *c);
                m_fault = box;
            }
        }
        return ToSingle(sum);
    }

    // The box to blame if the last entry could not be computed.
    std::size_t Fault() const { return m_fault; }

private:
    std::span<const std::string> m_typed;
    std::span<const std::string> m_current;
    std::size_t m_order;
    std::size_t m_fault = 0;
};

} // namespace

MatrixSetup::MatrixSetup(Matrix3& matrix, Dimensions dimensions)
    : m_matrix(matrix)
    , m_known(matrix)
    , m_dimensions(dimensions)
{
    ShowMatrix();
    Accept();
}

void MatrixSetup::Resume()
{
    if (m_matrix == m_known)
        return;
    ShowMatrix();
    Accept();
}

std::optional<std::size_t> MatrixSetup::Apply(MatrixOperation operation,
                                              std::span<const std::string> boxes)
{
    assert(boxes.size() == Count());
    Operands operands(boxes, m_labels, Order());
    for (std::size_t k = 0; k < Count(); ++k) {
        const auto value =
            operation == MatrixOperation::Multiply ? operands.Product(k) : operands.Sum(k);
        if (!value) {
            m_known = m_matrix;
            return operands.Fault();
        }
        m_matrix[Entry(k)] = *value;
    }
    ShowMatrix();
    return std::nullopt;
}

void MatrixSetup::Default()
{
    for (std::size_t k = 0; k < Count(); ++k)
        m_matrix[Entry(k)] = kIdentity[Entry(k)];
    ShowMatrix();
}

std::vector<std::string> MatrixSetup::Texts() const
{
    std::vector<std::string> texts;
    for (std::size_t k = 0; k < Count(); ++k)
        texts.push_back(EntryText(m_matrix[Entry(k)]));
    return texts;
}

void MatrixSetup::ShowMatrix()
{
    m_known = m_matrix;
    m_labels = Texts();
}

} // namespace kelvane
