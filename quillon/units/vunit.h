// Value-with-unit quantities: a value held in metre-kilogram-second form together with its
// dimension as three integer exponents (length, mass, time). A quantity is built from a free-form
// text such as "2.5 kN*m", "3 MPa", "kg/m^3" or "1/s", multiplied, divided and raised to integer
// powers, mapped to a named quantity type, and printed back as text ("1000*m*kg/s^2"). It stands
// apart from the user-unit catalogue of munit.h.
//
// Conventions:
// - Errors travel in the quantity's error flag and are never thrown: a text that does not parse, an
//   unknown type or an invalid operand gives an invalid quantity, which prints "[BAD-UNIT]". The
//   result of arithmetic carries the bitwise or of its operands' flags.
// - Exponents are 32-bit. Arithmetic whose exponents would leave that range gives an invalid
//   quantity rather than wrapping round.
// - Unit names are case-sensitive and matched by their beginning: whole units ("Ton", "T", "inch",
//   "in", "foot", "ft-in", "ft", "kip", "ksi", "lb", "psi", "ton", "t", "yard") first, then the
//   first prefix (M k h da d c m u) that the word starts with followed by a base unit (m g s G N Hz
//   Pa J W), then a base unit alone. Kept as the applications' stored texts expect: "ton" is a
//   length and "T" and "Ton" are forces.
// - Parsing keeps no process-wide state: any number of texts may be parsed at once on different
//   threads. Only the trace switch (YaccTrace) is process-wide.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

namespace quillon::munit {

// The dimension of a quantity: exponents of metre, kilogram and second.
struct SUnit {
    // Named quantity types. moment and energy share their exponents (2, 1, -2); a lookup by
    // exponents answers moment, the first of the two in the sorted table.
    enum Type : std::int32_t {
        none = -1,  // no named type has these exponents
        dimensionless = 1,
        length = 2,
        area = 3,
        volume = 4,
        mass = 5,
        time = 6,
        velocity = 7,
        acceleration = 8,
        force = 9,
        moment = 10,
        frequency = 11,
        stress = 12,  // stress or pressure
        energy = 13,
        power = 14,
    };

    std::int32_t m = 0;   // exponent of length
    std::int32_t kg = 0;  // exponent of mass
    std::int32_t s = 0;   // exponent of time

    constexpr SUnit() = default;
    constexpr SUnit(std::int32_t length_exp, std::int32_t mass_exp, std::int32_t time_exp)
        : m(length_exp), kg(mass_exp), s(time_exp) {}
    // The exponents of a named type; all 0 when the type is not in the table.
    SUnit(Type type);  // NOLINT(google-explicit-constructor): a type stands for its dimension

    void set(std::int32_t length_exp, std::int32_t mass_exp, std::int32_t time_exp) {
        m = length_exp;
        kg = mass_exp;
        s = time_exp;
    }
    void set() { set(0, 0, 0); }

    bool operator==(const SUnit&) const = default;

    // The named type with these exponents, or none (-1).
    Type type() const;
    // The text of a quantity of value 1.0 with these exponents, e.g. "m*kg/s^2".
    std::wstring ToString() const;
};

// A physical quantity in MKS form.
class VUnit {
public:
    // The dimensionless 1.0, like an empty text.
    VUnit() = default;
    VUnit(
        double value);  // NOLINT(google-explicit-constructor): a number is a dimensionless quantity
    VUnit(double value, std::int32_t length_exp, std::int32_t mass_exp, std::int32_t time_exp);
    // Invalid when the type is not one of the named types.
    VUnit(double value, SUnit::Type type);
    // Parsed from a unit text; invalid when the text does not parse or is null.
    VUnit(const wchar_t* text);  // NOLINT(google-explicit-constructor)
    VUnit(const VUnit&) = default;
    VUnit(VUnit&&) noexcept = default;
    VUnit& operator=(const VUnit&) = default;
    VUnit& operator=(VUnit&&) noexcept = default;
    ~VUnit() = default;

    void set();  // the dimensionless 1.0
    void set(double value);
    void set(double value, std::int32_t length_exp, std::int32_t mass_exp, std::int32_t time_exp);
    void set(double value, SUnit::Type type);
    // Parses a unit text; returns is_valid(). A null text gives an invalid quantity.
    bool set(const wchar_t* text);
    // Like set(text), but a format holding "%" is first expanded printf-style (with "." as the
    // decimal point, wide texts as %ls) into at most 4095 characters; a longer expansion or a
    // format error gives an invalid quantity.
    bool vset(const wchar_t* format, ...);

    // Back to the default quantity, marked invalid.
    void seterr();

    bool is_valid() const { return err_ == 0; }
    explicit operator bool() const { return is_valid(); }
    double to_mks() const { return val_; }
    const SUnit& unit() const { return unit_; }
    SUnit::Type type() const { return unit_.type(); }

    VUnit& operator*=(const VUnit& other);
    VUnit& operator*=(double factor);
    VUnit& operator/=(const VUnit& other);
    VUnit& operator/=(double divisor);
    // Value raised to n, exponents multiplied by n; n == 0 gives the dimensionless 1.0.
    VUnit& operator^=(std::int32_t n);
    VUnit pow(std::int32_t n) const;

    friend VUnit operator*(VUnit a, const VUnit& b) { return a *= b; }
    friend VUnit operator*(VUnit a, double b) { return a *= b; }
    friend VUnit operator*(double a, const VUnit& b) { return VUnit(a) *= b; }
    friend VUnit operator/(VUnit a, const VUnit& b) { return a /= b; }
    friend VUnit operator/(VUnit a, double b) { return a /= b; }
    friend VUnit operator/(double a, const VUnit& b) { return VUnit(a) /= b; }

    // Switches the trace of the parser's tokens and reductions to standard error, for all threads.
    static void YaccTrace(bool on);
    static bool YaccTrace();

private:
    std::int32_t err_ = 0;  // 0 valid, 1 invalid
    SUnit unit_;
    double val_ = 1.0;
};

// "[BAD-UNIT]" for an invalid quantity; otherwise the value (unless it is 1.0 and some exponent is
// positive), "*" before the positive exponents, "/" before the negative ones: 1000*m*kg/s^2, m,
// 1/s.
std::wostream& operator<<(std::wostream& out, const VUnit& value);

}  // namespace quillon::munit
