// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Evaluation.h"

#include "values/Conversions.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace ferrolex {
namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

QByteArray numberText(double number)
{
    char buffer[values::kDecimalTextSize];
    return {buffer, static_cast<qsizetype>(values::writeDecimal(number, buffer))};
}

QByteArray padded(double number, double digits)
{
    const QByteArray text = numberText(std::fabs(number));
    const qsizetype whole = text.indexOf('.') < 0 ? text.size() : text.indexOf('.');
    const qsizetype missing = std::max<qsizetype>(static_cast<qsizetype>(digits) - whole, 0);
    return (number < 0 ? QByteArray("-") : QByteArray()) + QByteArray(missing, '0') + text;
}

class Evaluator
{
public:
    Evaluator(const Program& program, const std::vector<Value>& names, const Measured& measured)
        : m_program(program)
        , m_names(names)
        , m_measured(measured)
    {}

    /// After a failure the value means nothing.
    Value of(ExpressionId id)
    {
        const Expression& expression = m_program.expressions[static_cast<std::size_t>(id)];
        switch (expression.operation) {
        case Operation::Number:
            return {expression.number, {}};
        case Operation::Text:
            return {0, m_program.texts[static_cast<std::size_t>(expression.left)]};
        case Operation::Name:
            return m_names[static_cast<std::size_t>(expression.left)];
        case Operation::Measured:
            return {measurement(static_cast<Measurement>(expression.left)), {}};
        case Operation::Join:
            return joined(textOf(expression.left), textOf(expression.right));
        case Operation::Padded:
            return {0, padded(of(expression.left).number, expression.number)};
        case Operation::And:
            return {of(expression.left).number != 0 && of(expression.right).number != 0 ? 1.0 : 0.0, {}};
        case Operation::Or:
            return {of(expression.left).number != 0 || of(expression.right).number != 0 ? 1.0 : 0.0, {}};
        case Operation::Equal:
        case Operation::Unequal: {
            const Value left = of(expression.left);
            const Value right = of(expression.right);
            const bool equal = left.number == right.number && left.text == right.text;
            return {equal == (expression.operation == Operation::Equal) ? 1.0 : 0.0, {}};
        }
        default:
            return {arithmetic(expression), {}};
        }
    }

    const QString& failure() const { return m_failure; }

private:
    void fail(const QString& sentence)
    {
        if (m_failure.isEmpty())
            m_failure = sentence;
    }

    double finite(double number)
    {
        if (std::isfinite(number))
            return number;
        fail(tr("The result is no number, or too large for one."));
        return 0;
    }

    double arithmetic(const Expression& expression)
    {
        const double left = of(expression.left).number;
        const double right = expression.right == kNone ? 0 : of(expression.right).number;
        switch (expression.operation) {
        case Operation::Negate:
            return -left;
        case Operation::Add:
            return finite(left + right);
        case Operation::Subtract:
            return finite(left - right);
        case Operation::Multiply:
            return finite(left * right);
        case Operation::Divide:
        case Operation::Remainder:
            if (right == 0) {
                fail(tr("This divides by zero."));
                return 0;
            }
            return finite(expression.operation == Operation::Divide ? left / right : std::fmod(left, right));
        case Operation::Less:
            return left < right ? 1 : 0;
        case Operation::LessOrEqual:
            return left <= right ? 1 : 0;
        case Operation::Greater:
            return left > right ? 1 : 0;
        case Operation::GreaterOrEqual:
            return left >= right ? 1 : 0;
        case Operation::Not:
            return left == 0 ? 1 : 0;
        case Operation::Call:
            return finite(functions()[static_cast<std::size_t>(expression.number)].of(left, right));
        default:
            return 0;
        }
    }

    QByteArray textOf(ExpressionId id)
    {
        const Value value = of(id);
        return m_program.expressions[static_cast<std::size_t>(id)].type == Type::Text ? value.text
                                                                                      : numberText(value.number);
    }

    Value joined(const QByteArray& one, const QByteArray& other)
    {
        if (one.size() + other.size() <= kLongestText)
            return {0, one + other};
        fail(tr("The text becomes longer than 1000 bytes."));
        return {};
    }

    double measurement(Measurement which)
    {
        const std::array<std::optional<double>, 5> values{m_measured.lastLevel, m_measured.smallestLevel,
                                                          m_measured.largestLevel, m_measured.frequencyOfSmallest,
                                                          m_measured.frequencyOfLargest};
        const std::optional<double> value = values[static_cast<std::size_t>(which)];
        if (!value)
            fail(which == Measurement::LastLevel ? tr("Nothing has been measured yet.")
                                                 : tr("No sweep has been made yet."));
        return value.value_or(0);
    }

    const Program& m_program;
    const std::vector<Value>& m_names;
    const Measured& m_measured;
    QString m_failure;
};

} // namespace

const std::array<Function, kFunctionCount>& functions()
{
    static const std::array<Function, kFunctionCount> table{{
        {"round", 1, [](double x, double) { return std::nearbyint(x); }},
        {"floor", 1, [](double x, double) { return std::floor(x); }},
        {"abs", 1, [](double x, double) { return std::fabs(x); }},
        {"sqrt", 1, [](double x, double) { return std::sqrt(x); }},
        {"log", 1, [](double x, double) { return std::log10(x); }},
        {"power", 2, [](double x, double y) { return std::pow(x, y); }},
        {"min", 2, [](double x, double y) { return std::min(x, y); }},
        {"max", 2, [](double x, double y) { return std::max(x, y); }},
    }};
    return table;
}

ValueOr<Value> evaluate(const Program& program, ExpressionId id, const std::vector<Value>& names,
                        const Measured& measured)
{
    Evaluator evaluator(program, names, measured);
    Value value = evaluator.of(id);
    if (!evaluator.failure().isEmpty())
        return Outcome::failure(evaluator.failure());
    return value;
}

} // namespace ferrolex
