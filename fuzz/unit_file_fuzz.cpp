// Feeds arbitrary bytes to the unit-file reader. A damaged file must end in an ArchiveException
// with the table untouched, or load a table of valid records; never a crash, hang or leak.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "quillon/platform/locale.h"
#include "quillon/units/munit.h"

namespace {

quillon::munit::TypeUnitTable& fuzzTable() {
    static quillon::munit::TypeUnitTable table;
    return table;
}

bool setUp() {
    using namespace quillon::munit;
    InitMInit(true);
    SetGlobU(&fuzzTable());
    // Fixed separators: the run exercises the reader, not the environment's locale files.
    quillon::platform::LocaleTexts texts;
    texts.decimal = L",";
    quillon::platform::SetLocaleOverride(texts);
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon::munit;
    static const bool ready = setUp();
    (void)ready;

    MUnit mu;
    fuzzTable().clear();
    mu.SetTypeUnit(MUNIT_TYPE_7, 2, L"cm", L"", L"", false);
    const TypeUnitTable before = fuzzTable();

    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    quillon::Archive ar(in);
    bool loaded = true;
    try {
        mu.Serialize(ar);
    } catch (const quillon::ArchiveException&) {
        loaded = false;
    }
    if (!loaded && fuzzTable() != before) std::abort();  // half-replaced table
    if (loaded) {
        for (const TypeUnit& t : fuzzTable()) {
            if (mu.CorrectQuantity(t.id, t.kind1, t.kind2, t.kind3, t.unit1, t.unit2, t.unit3) !=
                M_SUCCESS) {
                std::abort();
            }
        }
        // Whatever was loaded must format and convert.
        mu.UpDateUnit();
        for (const TypeUnit& t : fuzzTable()) {
            (void)mu.CnvUnitSIToText(t.id, 1.25, BASIC_FROM_SI, SEPARATOR_TO_LOCALE);
        }
    }
    return 0;
}
