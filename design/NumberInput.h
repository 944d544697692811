#pragma once

// Numbers typed by a user, read alike wherever they come from: command options, batch cells, the
// dimensions of a section notation, the moments of a diagram, texts in a Python frame. One form: a decimal
// with an optional sign, fraction and exponent ("-300", "+5", ".5", "5.", "1.5e3"), blanks around it
// ignored, correctly rounded (std::from_chars, so the same text is the same double everywhere). Refused:
// hexadecimal ("0x10"), "inf", "nan", decimal or thousands commas, units ("5kN"), and values outside the
// range of a double ("1e400", "1e-400").

#include <string>
#include <string_view>

namespace design {

enum class NumberProblem {
    None,
    NotANumber,   // not the decimal form above
    NotFinite,    // "inf", "nan"
    OutOfRange,   // beyond the largest double, or a non-zero value below the smallest
};

// The value of text into value; the problem when there is one (value is then left alone).
NumberProblem readNumber(std::string_view text, double& value) noexcept;

// "not a number: '5kN'", "not a finite number: 'inf'", "outside the range of a double: '1e400'".
std::string numberProblemText(NumberProblem problem, std::string_view text);

// A value back in the shortest text that reads as it (2000, 1e+18, -0.5), for messages about it.
std::string shortestText(double value);

// The value, or InputError "<field>: not a number: '<text>'" (and the other problems likewise).
double numberOf(std::string_view field, std::string_view text);

} // namespace design
