#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "view3d/rotation.h"
#include "view3d/view_matrix.h"

namespace kelvane {

enum class MatrixOperation : std::uint8_t {
    Multiply, // T times C
    Add       // T plus C
};

// Changes a matrix by another one, T, that is typed into boxes. It works on the upper left block of
// 2 by 2 entries in two dimensions, on all nine in three, and leaves the rest alone.
//
// Beside the matrix it keeps a text of each entry, the label. The labels, not the matrix, are the
// operand C of an operation. They show the matrix after every operation that succeeds; apart from
// it they get by Restore and by an operation that fails half way. Boxes and labels are numbered
// down the columns: number k stands in row k mod n and column k div n of the block of n by n.
//
// The matrix outlives the setup, and holds finite numbers before and after each call.
class MatrixSetup {
public:
    // Labels and accepted labels show the matrix.
    MatrixSetup(Matrix3& matrix, Dimensions dimensions);

    // Rows and columns of the block: 2 or 3.
    std::size_t Order() const { return m_dimensions == Dimensions::Two ? 2 : 3; }
    // Boxes and labels: 4 or 9.
    std::size_t Count() const { return Order() * Order(); }
    // Which of m0 to m8 box and label k stand for.
    std::size_t Entry(std::size_t k) const { return k % Order() * 3 + k / Order(); }

    // The entry as the shortest decimal text that reads back as the same single; 0 of either sign
    // is "0".
    const std::string& Label(std::size_t k) const { return m_labels[k]; }
    // False when the labels are those of an older matrix.
    bool ShowsMatrix() const { return m_labels == Texts(); }

    // To be called when the user comes back: labels and accepted labels show the matrix if someone
    // else has changed it meanwhile.
    void Resume();

    // Gives every entry its new value, down the columns, formed in double and stored as a single.
    // Where a text is no number or a result is beyond the range of singles, the operation stops:
    // the entries before keep their new values, the labels stay, and the number of the box to blame
    // is returned. Needs Count() boxes.
    std::optional<std::size_t> Apply(MatrixOperation operation, std::span<const std::string> boxes);

    // Makes the block the identity.
    void Default();

    // Keeps the labels as the accepted ones, and puts these back. Neither touches the matrix.
    void Accept() { m_accepted = m_labels; }
    void Restore() { m_labels = m_accepted; }

private:
    std::vector<std::string> Texts() const;
    void ShowMatrix();

    Matrix3& m_matrix;
    Matrix3 m_known; // the matrix as this setup has last seen or left it
    Dimensions m_dimensions;
    std::vector<std::string> m_labels;
    std::vector<std::string> m_accepted;
};

} // namespace kelvane
