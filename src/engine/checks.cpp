#include "engine/checks.h"

namespace kelvane {

namespace {

// The walk over one equation's slots.
class EquationCheck {
public:
    EquationCheck(const Equation& equation, int number, const CalculationModes& modes)
        : m_equation(equation)
        , m_number(number)
        , m_rightStart(EquationsStart(equation))
        , m_allowZ(modes.Mode3D)
        , m_allowYOnRight(modes.Mode3D || modes.CalcMode2D != CalcMode::Simple)
    {
    }

    std::optional<EquationFault> Run()
    {
        for (int j = 1; !m_equation.AtEnd(j); ++j) {
            if (const auto fault = CheckSlot(j))
                return fault;
        }
        if (m_depth > 0)
            return EquationFault{Fault::MissingClose, m_number};
        return std::nullopt;
    }

private:
    std::optional<EquationFault> CheckSlot(int j)
    {
        const Token token = m_equation.Tok(j);
        if (token == Token::Y && !m_allowYOnRight && j > m_rightStart)
            return EquationFault{Fault::YOnRightSide, m_number, j};
        if (token == Token::Z && !m_allowZ)
            return EquationFault{Fault::ZIn2D, m_number, j};
        const bool needsOperand = IsBinaryOperator(token) || IsFunction(token);
        if (needsOperand && !m_afterOperand && !m_afterBinaryOperator)
            return EquationFault{Fault::OperatorMisplaced, m_number, j};
        m_afterOperand = !needsOperand;
        m_afterBinaryOperator = IsBinaryOperator(token);
        if (token == Token::Open)
            ++m_depth;
        if (token == Token::Close && --m_depth < 0)
            return EquationFault{Fault::UnexpectedClose, m_number, j};
        return std::nullopt;
    }

    const Equation& m_equation;
    int m_number;
    int m_rightStart;
    bool m_allowZ;
    bool m_allowYOnRight;
    int m_depth = 0;
    bool m_afterOperand = true; // an equation may begin with an operator
    bool m_afterBinaryOperator = false;
};

bool BeginsWith(const Equation& equation, Token variable)
{
    return equation.Tok(1) == variable && equation.Tok(2) == Token::Equals;
}

} // namespace

std::optional<EquationFault> CheckEquations(const EquationTable& table, const EquationTicks& ticks,
                                            const CalculationModes& modes)
{
    for (int number = 1; number <= table.EquationCount; ++number) {
        if (!ticks.On(number))
            continue;
        if (const auto fault = EquationCheck(table.At(number), number, modes).Run())
            return fault;
    }
    return std::nullopt;
}

std::optional<EquationFault> CheckYEquals(const EquationTable& table, int number)
{
    if (BeginsWith(table.At(number), Token::Y))
        return std::nullopt;
    return EquationFault{Fault::NotYEquals, number};
}

std::optional<EquationFault> CheckZEquals(const EquationTable& table, int number)
{
    if (BeginsWith(table.At(number), Token::Z))
        return std::nullopt;
    return EquationFault{Fault::NotZEquals, number};
}

} // namespace kelvane
