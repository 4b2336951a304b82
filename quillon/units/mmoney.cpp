#include "quillon/units/mmoney.h"

#include <cmath>
#include <iomanip>
#include <locale>
#include <sstream>

#include "quillon/platform/locale.h"
#include "quillon/platform/text.h"

namespace quillon::munit {

namespace {

constexpr std::size_t kFieldWidth = 24;
// The locale fields are read into buffers of 10 characters: a longer text does not fit and reads as
// none.
constexpr std::size_t kLocaleTextLimit = 9;

std::wstring limited(std::wstring text) {
    if (text.size() > kLocaleTextLimit) text.clear();
    return text;
}

void removeAll(std::wstring& text, const std::wstring& what) {
    if (what.empty()) return;
    for (std::size_t at = text.find(what); at != std::wstring::npos; at = text.find(what, at)) {
        text.erase(at, what.size());
    }
}

void replaceAll(std::wstring& text, const std::wstring& what, const std::wstring& with) {
    if (what.empty()) return;
    for (std::size_t at = text.find(what); at != std::wstring::npos;
         at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
}

}  // namespace

MMoney::MMoney(double amount) : amount_(RoundDouble(amount)) {}

MMoney::MMoney(const wchar_t* text) { Parse(text, amount_); }

MMoney& MMoney::operator=(double amount) {
    amount_ = RoundDouble(amount);
    return *this;
}

MMoney& MMoney::operator=(const wchar_t* text) {
    Parse(text, amount_);
    return *this;
}

MMoney& MMoney::operator=(const std::wstring& text) { return *this = text.c_str(); }

MMoney& MMoney::operator+=(double other) {
    amount_ = RoundDouble(amount_ + other);
    return *this;
}

MMoney& MMoney::operator+=(const MMoney& other) { return *this += other.amount_; }

MMoney& MMoney::operator-=(double other) {
    amount_ = RoundDouble(amount_ - other);
    return *this;
}

MMoney& MMoney::operator-=(const MMoney& other) { return *this -= other.amount_; }

MMoney MMoney::operator-() const { return MMoney(-amount_); }

double MMoney::RoundDouble(double value) {
    const double y = value * static_cast<double>(Factor());
    const double a = std::fabs(y);
    const double lo = std::floor(a);
    const double hi = std::ceil(a);
    const double whole = hi - a > a - lo ? lo : hi;
    const double sign = y < 0 ? -1.0 : 1.0;
    return sign * whole / static_cast<double>(Factor());
}

std::wstring MMoney::DoubleToStr(double value, wchar_t fill) {
    std::wostringstream out;
    out.imbue(std::locale::classic());
    out << std::fixed << std::setprecision(2) << std::right << std::setfill(fill)
        << std::setw(kFieldWidth) << value;
    return out.str();
}

std::wstring MMoney::Format() const {
    std::wstring text = DoubleToStr(amount_, L' ');
    text.erase(0, text.find_first_not_of(L' '));  // right-aligned: the blanks are on the left

    const std::wstring decimal = GetDecimalSeparator();
    const std::wstring thousands = GetThousandSeparator();
    std::wstring result;
    std::wstring integer = text;
    const std::size_t point = text.find(L'.');
    if (point != std::wstring::npos) {  // fixed notation: two decimals follow
        result = decimal + text.substr(point + 1);
        integer = text.substr(0, point);
    }
    // Groups of three from the right; a minus sign is never followed by a separator.
    std::size_t count = 0;
    for (auto it = integer.rbegin(); it != integer.rend(); ++it, ++count) {
        if (count != 0 && count % 3 == 0 && *it != L'-') result.insert(0, thousands);
        result.insert(result.begin(), *it);
    }
    return result;
}

bool MMoney::Parse(const wchar_t* text, double& out) {
    std::wstring work = text ? text : L"";
    removeAll(work, GetThousandSeparator());
    replaceAll(work, GetDecimalSeparator(), L".");
    out = RoundDouble(platform::_wtof(work));
    return true;
}

std::wstring MMoney::GetCurrencySymbol() {
    return limited(platform::CurrentLocaleTexts().currencySymbol);
}

std::wstring MMoney::GetDecimalSeparator() {
    return limited(platform::CurrentLocaleTexts().monetaryDecimal);
}

std::wstring MMoney::GetThousandSeparator() {
    return limited(platform::CurrentLocaleTexts().monetaryThousands);
}

}  // namespace quillon::munit
