// Arbitrary bytes as a unit text: the parser answers with a quantity or an invalid one, never a
// crash, hang or leak. The bytes are read both as UTF-8 and as one wide character each.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>

#include "quillon/platform/text.h"
#include "quillon/units/vunit.h"

namespace {

void Check(const std::wstring& text) {
    using quillon::munit::VUnit;
    const VUnit value(text.c_str());
    std::wostringstream out;
    out << value;
    if (value.is_valid()) {
        // What is printed of a finite quantity reads back with the same dimension.
        const VUnit squared = value.pow(2) / value;
        (void)squared.type();
        // -2^31 prints as its absolute value, which reads back saturated; skip it.
        const auto lowest = std::numeric_limits<std::int32_t>::min();
        const auto& u = value.unit();
        if (out.str().find(L"nan") == std::wstring::npos &&
            out.str().find(L"inf") == std::wstring::npos && u.m != lowest && u.kg != lowest &&
            u.s != lowest) {
            const VUnit back(out.str().c_str());
            if (!back.is_valid() || !(back.unit() == value.unit())) std::abort();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Check(quillon::platform::FromUtf8(bytes));
    std::wstring wide;
    wide.reserve(size);
    for (const std::uint8_t b : bytes) wide.push_back(static_cast<wchar_t>(b));
    Check(wide);
    return 0;
}
