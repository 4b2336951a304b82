// Feeds arbitrary text to the contour text readers. A reader must answer with a tree or with
// ContourTextError, never crash, hang or leak; a tree it accepts must write and read back with the
// same shape.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "quillon/geometry/contours/contour_text.h"
#include "quillon/platform/text.h"

namespace {

bool SameShape(const quillon::ProContour& a, const quillon::ProContour& b) {
    if (a.ChildrenCount() != b.ChildrenCount()) return false;
    const auto* ca = dynamic_cast<const quillon::ProClosedContour*>(&a);
    const auto* cb = dynamic_cast<const quillon::ProClosedContour*>(&b);
    if ((ca == nullptr) != (cb == nullptr)) return false;
    if (ca != nullptr && ca->size() != cb->size()) return false;
    for (unsigned long i = 0; i < a.ChildrenCount(); ++i) {
        if (!SameShape(*a.ContourChild(i), *b.ContourChild(i))) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon;
    const std::wstring text =
        platform::FromUtf8(std::string_view(reinterpret_cast<const char*>(data), size));
    const int before = ProContour::get_contour_allocs();
    {
        std::wstring unit;
        std::unique_ptr<ProComplexContour> tree;
        try {
            ProComplexContourAndUnitReader reader(text);
            tree.reset(reader.read(unit));
        } catch (const ContourTextError&) {
        }
        // A failed read leaves nothing behind.
        if (!tree && ProContour::get_contour_allocs() != before) std::abort();
        if (tree) {
            // Non-finite numbers print as words and cannot read back; everything else must.
            ProComplexContourAndUnitWriter writer(unit);
            const std::wstring written = writer.write(*tree);
            if (written.find(L"nan") == std::wstring::npos &&
                written.find(L"inf") == std::wstring::npos) {
                try {
                    std::wstring unit2;
                    ProComplexContourAndUnitReader again(written);
                    std::unique_ptr<ProComplexContour> back(again.read(unit2));
                    if (!back || unit2 != unit || !SameShape(*tree, *back)) std::abort();
                } catch (const ContourTextError&) {
                    std::abort();
                }
            }
        }
    }
    {
        // The plain line-arc reader never throws.
        LAContourReader reader(text);
        (void)reader.read();
    }
    if (ProContour::get_contour_allocs() != before) std::abort();
    return 0;
}
