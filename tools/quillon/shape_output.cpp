#include "tools/quillon/shape_output.h"

#include <cctype>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/platform/text.h"

namespace quillon::tool {

namespace {

bool IsDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }
bool IsWordChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.';
}

}  // namespace

std::string ContourText(const ProComplexContour& shape, const std::string& unit) {
    const std::wstring text =
        unit.empty() ? WriteShapeText(shape) : WriteShapeText(shape, platform::FromUtf8(unit));
    return WithoutNegativeZeros(platform::ToUtf8(text));
}

std::string ShapeSummary(const ProComplexContour& shape) {
    unsigned long holes = 0;
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i)
        if (const ProSolidContour* s = shape.SolidChild(i)) holes += s->ChildrenCount();
    return platform::FormatC("%lu solid(s) with %lu hole(s)", shape.ChildrenCount(), holes);
}

std::string WithoutNegativeZeros(std::string text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool startsNumber = text[i] == '-' && (i == 0 || !IsWordChar(text[i - 1])) &&
                                  i + 1 < text.size() &&
                                  (IsDigit(text[i + 1]) || text[i + 1] == '.');
        if (startsNumber) {
            std::size_t j = i + 1;
            bool digit = false, zero = true;
            for (; j < text.size() && (IsDigit(text[j]) || text[j] == '.'); ++j) {
                if (text[j] == '.') continue;
                digit = true;
                zero = zero && text[j] == '0';
            }
            if (digit && zero) continue;  // the sign goes, the figures follow
        }
        out += text[i];
    }
    return out;
}

}  // namespace quillon::tool
