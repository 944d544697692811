#include "NumberInput.h"

#include "InputError.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace design {

namespace {

bool blank(char c) { return c == ' ' || c == '\t'; }

bool digit(char c) { return c >= '0' && c <= '9'; }

}

NumberProblem readNumber(std::string_view text, double& value) noexcept
{
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    // std::from_chars takes no '+'; one is dropped before a digit or a point.
    if (text.size() >= 2 && text.front() == '+' && (digit(text[1]) || text[1] == '.')) text.remove_prefix(1);
    // The decimal form: digits before or after a point, then an exponent. from_chars also reads "inf",
    // "nan" and "infinity", refused below as not finite.
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    double x = 0.0;
    const auto [stop, ec] = std::from_chars(begin, end, x, std::chars_format::general);
    if (stop != end || begin == end) return NumberProblem::NotANumber;
    if (ec == std::errc::result_out_of_range) return NumberProblem::OutOfRange;
    if (ec != std::errc()) return NumberProblem::NotANumber;
    if (!std::isfinite(x)) return NumberProblem::NotFinite;
    value = x;
    return NumberProblem::None;
}

std::string numberProblemText(NumberProblem problem, std::string_view text)
{
    std::string quoted;
    quoted.reserve(text.size() + 2);
    quoted.append(1, '\'').append(text).append(1, '\'');
    switch (problem) {
    case NumberProblem::None: return {};
    case NumberProblem::NotANumber: return "not a number: " + quoted;
    case NumberProblem::NotFinite: return "not a finite number: " + quoted;
    case NumberProblem::OutOfRange: return "outside the range of a double: " + quoted;
    }
    return "not a number: " + quoted;
}

std::string shortestText(double value)
{
    char buffer[32];
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return ec == std::errc() ? std::string(buffer, end) : std::string("?");
}

double numberOf(std::string_view field, std::string_view text)
{
    double value = 0.0;
    const NumberProblem problem = readNumber(text, value);
    if (problem != NumberProblem::None) throw InputError(std::string(field) + ": " + numberProblemText(problem, text));
    return value;
}

} // namespace design
