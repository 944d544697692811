#include "NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>


namespace batch {

namespace {

constexpr int precision = 6;

// The exact conversion (std::to_chars with a precision converts as printf does), the slower path.
char* writeExact(char* out, double value)
{
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, precision);
    const std::size_t length = static_cast<std::size_t>(result.ptr - buffer);
    std::memcpy(out, buffer, length);
    return out + length;
}

} // namespace

// Six significant digits come from one scaling: n = |value| x 10^(5 - X), X the decimal exponent, so that
// n lies in [100000, 1000000), rounded to the nearest integer. The powers of ten used are exact doubles
// and the scaling rounds once, so n is within 2e-10 of its exact value: the rounding can only go the wrong
// way when n's fraction is that close to one half, and those values (with the ones outside 1e-5 .. 1e15,
// zero, the infinities and NaN) take the exact conversion.
void appendGeneral6(std::string& out, double value)
{
    // Straight into out: bytes stored one by one and then copied by a wide load would stall the load (no
    // store-to-load forwarding) on every number.
    const std::size_t start = out.size();
    out.resize(start + general6Length);
    char* const end = writeGeneral6(out.data() + start, value);
    out.resize(static_cast<std::size_t>(end - out.data()));
}

char* writeGeneral6(char* text, double value)
{
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10,
                                        1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20};
    if (value == 0.0) {  // most utilizations of a row are zero
        if (std::signbit(value)) *text++ = '-';
        *text++ = '0';
        return text;
    }
    const double magnitude = std::fabs(value);
    if (!(magnitude >= 1e-5 && magnitude < 1e15)) return writeExact(text, value);
    int exponent = 0;  // a first guess of X, corrected below
    static constexpr double fractions[] = {1e0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5};  // a guess needs no exact power
    if (magnitude >= 1.0) {
        while (exponent < 15 && magnitude >= powers[exponent + 1]) ++exponent;
    } else {
        while (exponent > -5 && magnitude < fractions[-exponent]) --exponent;
    }
    auto scale = [&](int x) {
        const int shift = precision - 1 - x;
        return shift >= 0 ? magnitude * powers[shift] : magnitude / powers[-shift];
    };
    double scaled = scale(exponent);
    if (scaled >= 999999.5) scaled = scale(++exponent);
    else if (scaled < 99999.5) scaled = scale(--exponent);
    long n = static_cast<long>(scaled);  // scaled > 0: truncation is the floor
    const double fraction = scaled - static_cast<double>(n);
    if (std::fabs(fraction - 0.5) < 1e-9) return writeExact(text, value);
    if (fraction > 0.5) ++n;
    if (n == 1000000) {  // 999999.7 -> 1.00000 x 10^(X+1)
        n = 100000;
        ++exponent;
    }
    // The six digits two by two from a table, then the text by copies of fixed size: the room of
    // general6Length characters takes the bytes copied past the end of the number, which the caller drops.
    static constexpr char pairs[] = "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
                                    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
                                    "8081828384858687888990919293949596979899";
    char digits[16] = {};
    const auto six = static_cast<unsigned>(n);
    std::memcpy(digits, pairs + 2 * (six / 10000), 2);
    std::memcpy(digits + 2, pairs + 2 * (six / 100 % 100), 2);
    std::memcpy(digits + 4, pairs + 2 * (six % 100), 2);
    int count = precision;
    while (count > 1 && digits[count - 1] == '0') --count;  // %g drops trailing zeros

    char* t = text;  // at most "-0.0000999999" or "-9.99999e+14"
    if (value < 0.0) *t++ = '-';
    if (exponent >= -4 && exponent < precision) {
        if (exponent >= 0) {
            // The digits before the point (the ones past count are zeros), then the others after it.
            std::memcpy(t, digits, 8);
            t += exponent + 1;
            if (count > exponent + 1) {
                *t++ = '.';
                std::memcpy(t, digits + exponent + 1, 8);
                t += count - exponent - 1;
            }
        } else {
            std::memcpy(t, "0.000000", 8);  // "0." and -exponent - 1 zeros
            t += 1 - exponent;
            std::memcpy(t, digits, 8);
            t += count;
        }
    } else {
        *t++ = digits[0];
        if (count > 1) {
            *t++ = '.';
            std::memcpy(t, digits + 1, 8);
            t += count - 1;
        }
        *t++ = 'e';
        *t++ = exponent < 0 ? '-' : '+';
        const int e = exponent < 0 ? -exponent : exponent;
        *t++ = static_cast<char>('0' + e / 10);
        *t++ = static_cast<char>('0' + e % 10);
    }
    return t;
}

} // namespace batch
