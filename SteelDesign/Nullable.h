#pragma once

namespace kat {

// An optional result value: a presence flag and the value. A result that was never computed reads
// hasValue() == false; its value() is then meaningless (it holds a default-constructed T).
template <typename T>
class Nullable {
public:
    constexpr Nullable() = default;
    constexpr Nullable(const T& value) : hasValue_(true), value_(value) {}  // NOLINT: implicit by design

    constexpr bool hasValue() const { return hasValue_; }
    constexpr explicit operator bool() const { return hasValue_; }
    constexpr const T& value() const { return value_; }
    // The value, or the fallback when absent.
    constexpr T valueOr(const T& fallback) const { return hasValue_ ? value_ : fallback; }

    constexpr Nullable& operator=(const T& value)
    {
        hasValue_ = true;
        value_ = value;
        return *this;
    }
    constexpr void reset()
    {
        hasValue_ = false;
        value_ = T{};
    }

private:
    bool hasValue_ = false;
    T value_{};
};

} // namespace kat
