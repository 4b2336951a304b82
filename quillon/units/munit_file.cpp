// The unit file: the user's choices for the quantity types, as a versioned binary archive.
//
// Layout: the schema version (unsigned 16-bit, written as 8), then one record for each of the
// first n types of kFileOrder (n by version: 1->6, 2->7, 3->11, 4->12, 5->15, 6..8->16); the
// position gives the id. A record: precision (int32), unit1, unit2, unit3 (strings), exponential
// (int32, nonzero = true), from version 7 a spare int32 (written 0, ignored), from version 8
// extraText (string). Factors and names are not stored: UpDateUnit derives them.
#include <exception>
#include <fstream>
#include <sstream>

#include "quillon/units/munit.h"

namespace quillon::munit {
namespace {

// Kept: stored files depend on this order.
constexpr MUNIT_TYPES kFileOrder[] = {
    MUNIT_TYPE_7,  MUNIT_TYPE_8,  MUNIT_TYPE_15, MUNIT_TYPE_23, MUNIT_TYPE_6,  MUNIT_TYPE_17,
    MUNIT_TYPE_13, MUNIT_TYPE_31, MUNIT_TYPE_33, MUNIT_TYPE_19, MUNIT_TYPE_14, MUNIT_TYPE_16,
    MUNIT_TYPE_5,  MUNIT_TYPE_12, MUNIT_TYPE_11, MUNIT_TYPE_34,
};

constexpr std::uint16_t kFileVersion = 8;

int recordCount(int version) {
    switch (version) {
        case 1:
            return 6;
        case 2:
            return 7;
        case 3:
            return 11;
        case 4:
            return 12;
        case 5:
            return 15;
        default:
            return version >= 6 ? 16 : 0;
    }
}

}  // namespace

void MUnit::Serialize(Archive& ar) {
    if (ar.IsStoring()) {
        ar << kFileVersion;
        for (MUNIT_TYPES id : kFileOrder) {
            const TypeUnit t = GetTypeUnit(id);  // an absent id writes a default record
            ar << static_cast<std::int32_t>(t.precision) << t.unit1 << t.unit2 << t.unit3
               << static_cast<std::int32_t>(t.exponential ? 1 : 0) << std::int32_t{0}
               << t.extraText;
        }
        return;
    }

    std::uint16_t stored = 0;
    ar >> stored;
    if (stored > kFileVersion) throw ArchiveException(ArchiveException::badSchema);
    const int version = stored;

    // Every record is read before the table is touched, so a damaged file leaves it as it was.
    struct Stored {
        std::int32_t precision = 0;
        std::wstring unit1, unit2, unit3;
        std::int32_t exponential = 0;
        std::wstring extraText;
    };
    std::vector<Stored> records(static_cast<std::size_t>(recordCount(version)));
    for (Stored& r : records) {
        ar >> r.precision >> r.unit1 >> r.unit2 >> r.unit3 >> r.exponential;
        if (version >= 7) {
            std::int32_t spare = 0;
            ar >> spare;
        }
        if (version >= 8) ar >> r.extraText;
    }

    // The new table is built aside and then replaces the old one in one step. Records that do not
    // validate (unknown units, wrong kinds) are dropped, as when they are added one by one.
    TypeUnitTable table;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const Stored& r = records[i];
        AddRecord(table, BuildRecord(kFileOrder[i], r.precision, r.unit1, r.unit2, r.unit3,
                                     r.exponential != 0, r.extraText));
    }
    GlobU() = std::move(table);
}

bool MUnit::InitFromFile(const std::filesystem::path& path) {
    try {
        std::ifstream file(path, std::ios::binary);
        if (!file) return false;
        Archive ar(file);
        Serialize(ar);
        return true;
    } catch (...) {
        // Any failure (open, read, a bad version, memory) is answered by false alone.
        return false;
    }
}

bool MUnit::WriteToFile(const std::filesystem::path& path) {
    try {
        // The whole file is composed first, so that a failure leaves no half-written records.
        std::ostringstream buffer(std::ios::binary);
        Archive ar(buffer);
        Serialize(ar);
        const std::string bytes = buffer.str();
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        if (!file) return false;
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
        return !file.fail();
    } catch (...) {
        return false;
    }
}

}  // namespace quillon::munit
