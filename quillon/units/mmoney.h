// Amounts of money (costs and prices shown to the user). An amount is one double, rounded to whole
// hundredths at every assignment, halves away from zero. It is formatted and parsed with the user's
// monetary separators (quillon/platform/locale.h), read anew on every call.
//
// Comparisons are made on the 24-character zero-padded fixed texts of the amounts (ToZStr),
// compared character by character. For amounts >= 0 this is numeric order. For negative amounts it
// is not, and this is kept deliberately: the padding stands left of the minus sign, so every
// negative amount sorts before every amount >= 0, and among negatives -5 sorts after -3
// ("...0-5.00" > "...0-3.00").
#pragma once

#include <concepts>
#include <string>
#include <type_traits>

namespace quillon::munit {

class MMoney {
public:
    MMoney() = default;
    MMoney(double amount);        // NOLINT(google-explicit-constructor): rounded with RoundDouble
    MMoney(const wchar_t* text);  // NOLINT(google-explicit-constructor): read with Parse
    // Whole amounts; also keeps MMoney(0) from reading as a null text.
    template <std::integral T>
    MMoney(T amount)  // NOLINT(google-explicit-constructor)
        : MMoney(static_cast<double>(amount)) {}
    MMoney(const MMoney&) = default;
    ~MMoney() = default;

    MMoney& operator=(const MMoney&) = default;
    MMoney& operator=(double amount);
    MMoney& operator=(const wchar_t* text);
    MMoney& operator=(const std::wstring& text);
    template <std::integral T>
    MMoney& operator=(T amount) {
        return *this = static_cast<double>(amount);
    }

    double GetVal() const { return amount_; }
    operator double() const { return amount_; }  // NOLINT(google-explicit-constructor)

    MMoney& operator+=(double other);
    MMoney& operator+=(const MMoney& other);
    MMoney& operator-=(double other);
    MMoney& operator-=(const MMoney& other);
    MMoney operator-() const;

    // The fixed text: 2 decimals, "." as the decimal point, right-aligned in 24 characters.
    std::wstring ToStr() const { return DoubleToStr(amount_, L' '); }   // padded with blanks
    std::wstring ToZStr() const { return DoubleToStr(amount_, L'0'); }  // padded with zeros

    // The amount with the user's monetary separators, e.g. "-1,234.50".
    std::wstring Format() const;

    // Removes the monetary thousands separators, reads the monetary decimal separator as ".", takes
    // the leading number (0 when there is none) and rounds it. Always true; a null text reads as 0.
    static bool Parse(const wchar_t* text, double& out);
    // Rounds to hundredths; an exact half goes away from zero.
    static double RoundDouble(double value);
    static long Factor() { return 100; }

    // The user's local currency symbol, monetary decimal and thousands separators; empty when the
    // locale has none or when the text is longer than 9 characters (the longest the applications'
    // fields take).
    static std::wstring GetCurrencySymbol();
    static std::wstring GetDecimalSeparator();
    static std::wstring GetThousandSeparator();

    // Comparisons by the zero-padded texts (see above). Mixed with numbers, the number is first
    // made an amount (rounded); the overloads keep such comparisons unambiguous.
    friend bool operator==(const MMoney& a, const MMoney& b) { return a.ToZStr() == b.ToZStr(); }
    friend bool operator!=(const MMoney& a, const MMoney& b) { return a.ToZStr() != b.ToZStr(); }
    friend bool operator<(const MMoney& a, const MMoney& b) { return a.ToZStr() < b.ToZStr(); }
    friend bool operator<=(const MMoney& a, const MMoney& b) { return a.ToZStr() <= b.ToZStr(); }
    friend bool operator>(const MMoney& a, const MMoney& b) { return a.ToZStr() > b.ToZStr(); }
    friend bool operator>=(const MMoney& a, const MMoney& b) { return a.ToZStr() >= b.ToZStr(); }

    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator==(const MMoney& a, T b) { return a == MMoney(static_cast<double>(b)); }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator!=(const MMoney& a, T b) { return a != MMoney(static_cast<double>(b)); }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator<(const MMoney& a, T b) { return a < MMoney(static_cast<double>(b)); }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator<=(const MMoney& a, T b) { return a <= MMoney(static_cast<double>(b)); }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator>(const MMoney& a, T b) { return a > MMoney(static_cast<double>(b)); }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator>=(const MMoney& a, T b) { return a >= MMoney(static_cast<double>(b)); }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator==(T a, const MMoney& b) { return MMoney(static_cast<double>(a)) == b; }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator!=(T a, const MMoney& b) { return MMoney(static_cast<double>(a)) != b; }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator<(T a, const MMoney& b) { return MMoney(static_cast<double>(a)) < b; }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator<=(T a, const MMoney& b) { return MMoney(static_cast<double>(a)) <= b; }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator>(T a, const MMoney& b) { return MMoney(static_cast<double>(a)) > b; }
    template <typename T>
    requires std::is_arithmetic_v<T>
    friend bool operator>=(T a, const MMoney& b) { return MMoney(static_cast<double>(a)) >= b; }

protected:
    // The value in fixed notation with 2 decimals, right-aligned in a field of 24 characters padded
    // with fill on the left (left of a minus sign too). A wider text is not cut.
    static std::wstring DoubleToStr(double value, wchar_t fill);

private:
    double amount_ = 0.0;
};

}  // namespace quillon::munit
