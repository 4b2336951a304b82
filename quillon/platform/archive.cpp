#include "quillon/platform/archive.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <type_traits>
#include <vector>

namespace quillon {

namespace {

// Windows-1252 for the bytes 0x80..0x9F of the narrow string form; the other bytes are Latin-1.
constexpr std::array<char16_t, 32> kCp1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

const char* causeText(int cause) {
    switch (cause) {
        case ArchiveException::none:
            return "archive: no error";
        case ArchiveException::generic:
            return "archive: stream failure";
        case ArchiveException::readOnly:
            return "archive: storing into a loading archive";
        case ArchiveException::endOfFile:
            return "archive: read past the end";
        case ArchiveException::writeOnly:
            return "archive: loading from a storing archive";
        case ArchiveException::badIndex:
            return "archive: bad index";
        case ArchiveException::badClass:
            return "archive: bad class";
        case ArchiveException::badSchema:
            return "archive: unknown schema version";
        default:
            return "archive: error";
    }
}

// Reads the length of a string; sets `wide` when it is a wide (UTF-16) one and leaves it as it was
// otherwise.
std::uint64_t readStringLength(Archive& ar, bool& wide) {
    std::uint8_t b = 0;
    ar >> b;
    if (b < 0xFF) return b;
    std::uint16_t w = 0;
    ar >> w;
    if (w == 0xFFFE) {
        wide = true;
        ar >> b;
        if (b < 0xFF) return b;
        ar >> w;
    }
    if (w < 0xFFFF) return w;
    std::uint32_t d = 0;  // mutate: off (read at once)
    ar >> d;
    if (d < 0xFFFFFFFFu) return d;
    std::uint64_t q = 0;  // mutate: off (read at once)
    ar >> q;
    return q;
}

}  // namespace

ArchiveException::ArchiveException(int causeCode, const std::string& message)
    : std::runtime_error(message.empty() ? causeText(causeCode) : message), cause(causeCode) {}

Archive::Archive(std::ostream& out) : out_(&out) {}
Archive::Archive(std::istream& in) : in_(&in) {}

void Archive::Write(const void* data, std::size_t size) {
    if (!out_) throw ArchiveException(ArchiveException::readOnly);
    if (size == 0) return;
    out_->write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    if (!*out_) throw ArchiveException(ArchiveException::generic);
}

void Archive::Read(void* data, std::size_t size) {
    if (!in_) throw ArchiveException(ArchiveException::writeOnly);
    if (size == 0) return;
    in_->read(static_cast<char*>(data), static_cast<std::streamsize>(size));
    if (static_cast<std::size_t>(in_->gcount()) != size) {
        throw ArchiveException(ArchiveException::endOfFile);
    }
}

template <typename T>
void Archive::storeLE(T v) {
    using U = std::make_unsigned_t<
        std::conditional_t<std::is_floating_point_v<T>,
                           std::conditional_t<sizeof(T) == 4, std::int32_t, std::int64_t>, T>>;
    U bits;
    std::memcpy(&bits, &v, sizeof bits);
    unsigned char bytes[sizeof(U)];
    for (std::size_t i = 0; i < sizeof(U); ++i) {
        bytes[i] = static_cast<unsigned char>(bits >> (8 * i));
    }
    Write(bytes, sizeof bytes);
}

template <typename T>
T Archive::loadLE() {
    using U = std::make_unsigned_t<
        std::conditional_t<std::is_floating_point_v<T>,
                           std::conditional_t<sizeof(T) == 4, std::int32_t, std::int64_t>, T>>;
    unsigned char bytes[sizeof(U)];
    Read(bytes, sizeof bytes);
    U bits = 0;
    for (std::size_t i = 0; i < sizeof(U); ++i) {
        bits = static_cast<U>(bits | (static_cast<U>(bytes[i]) << (8 * i)));
    }
    T v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

Archive& Archive::operator<<(std::int8_t v) { return storeLE(v), *this; }
Archive& Archive::operator<<(std::uint8_t v) { return storeLE(v), *this; }
Archive& Archive::operator<<(std::int16_t v) { return storeLE(v), *this; }
Archive& Archive::operator<<(std::uint16_t v) { return storeLE(v), *this; }
Archive& Archive::operator<<(std::int32_t v) { return storeLE(v), *this; }
Archive& Archive::operator<<(std::uint32_t v) { return storeLE(v), *this; }
Archive& Archive::operator<<(std::int64_t v) { return storeLE(v), *this; }
Archive& Archive::operator<<(std::uint64_t v) { return storeLE(v), *this; }
Archive& Archive::operator<<(float v) { return storeLE(v), *this; }
Archive& Archive::operator<<(double v) { return storeLE(v), *this; }

Archive& Archive::operator>>(std::int8_t& v) { return v = loadLE<std::int8_t>(), *this; }
Archive& Archive::operator>>(std::uint8_t& v) { return v = loadLE<std::uint8_t>(), *this; }
Archive& Archive::operator>>(std::int16_t& v) { return v = loadLE<std::int16_t>(), *this; }
Archive& Archive::operator>>(std::uint16_t& v) { return v = loadLE<std::uint16_t>(), *this; }
Archive& Archive::operator>>(std::int32_t& v) { return v = loadLE<std::int32_t>(), *this; }
Archive& Archive::operator>>(std::uint32_t& v) { return v = loadLE<std::uint32_t>(), *this; }
Archive& Archive::operator>>(std::int64_t& v) { return v = loadLE<std::int64_t>(), *this; }
Archive& Archive::operator>>(std::uint64_t& v) { return v = loadLE<std::uint64_t>(), *this; }
Archive& Archive::operator>>(float& v) { return v = loadLE<float>(), *this; }
Archive& Archive::operator>>(double& v) { return v = loadLE<double>(), *this; }

Archive& Archive::operator<<(const std::wstring& v) {
    if (!out_) throw ArchiveException(ArchiveException::readOnly);
    std::u16string units;
    units.reserve(v.size());
    for (wchar_t wc : v) {
        auto c = static_cast<std::uint32_t>(wc);
        if constexpr (sizeof(wchar_t) > 2) {
            if (c > 0xFFFF && c <= 0x10FFFF) {
                c -= 0x10000;
                units.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
                units.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
                continue;
            }
            if (c > 0x10FFFF) c = 0xFFFD;  // not a character: stored as the replacement one
        }
        units.push_back(static_cast<char16_t>(c));
    }
    const std::uint64_t n = units.size();
    *this << std::uint8_t{0xFF} << std::uint16_t{0xFFFE};
    if (n < 0xFF) {
        *this << static_cast<std::uint8_t>(n);
    } else if (n < 0xFFFE) {
        *this << std::uint8_t{0xFF} << static_cast<std::uint16_t>(n);
    } else if (n < 0xFFFFFFFFu) {
        *this << std::uint8_t{0xFF} << std::uint16_t{0xFFFF} << static_cast<std::uint32_t>(n);
    } else {
        *this << std::uint8_t{0xFF} << std::uint16_t{0xFFFF} << std::uint32_t{0xFFFFFFFFu} << n;
    }
    std::vector<unsigned char> bytes(units.size() * 2);
    for (std::size_t i = 0; i < units.size(); ++i) {
        bytes[2 * i] = static_cast<unsigned char>(units[i] & 0xFF);
        bytes[2 * i + 1] = static_cast<unsigned char>(units[i] >> 8);
    }
    Write(bytes.data(), bytes.size());
    return *this;
}

Archive& Archive::operator>>(std::wstring& v) {
    if (!in_) throw ArchiveException(ArchiveException::writeOnly);
    bool wide = false;
    const std::uint64_t n = readStringLength(*this, wide);
    const std::size_t unitSize = wide ? 2 : 1;
    // A damaged length must not allocate gigabytes before the end of the data shows up: read in
    // bounded chunks, so a short stream fails after at most one chunk.
    constexpr std::uint64_t kChunk = 1u << 16;
    std::wstring result;
    std::vector<unsigned char> bytes;
    std::uint32_t pendingHigh = 0;
    for (std::uint64_t done = 0; done < n;) {
        const std::uint64_t take = std::min<std::uint64_t>(kChunk, n - done);
        bytes.resize(static_cast<std::size_t>(take) * unitSize);
        Read(bytes.data(), bytes.size());
        for (std::size_t i = 0; i < take; ++i) {
            std::uint32_t c;
            if (!wide) {
                const unsigned char b = bytes[i];
                c = (b >= 0x80 && b < 0xA0) ? kCp1252High[b - 0x80] : b;
                result.push_back(static_cast<wchar_t>(c));
                continue;
            }
            c = static_cast<std::uint32_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
            if constexpr (sizeof(wchar_t) > 2) {
                if (c >= 0xD800 && c < 0xDC00) {
                    if (pendingHigh) result.push_back(static_cast<wchar_t>(pendingHigh));
                    pendingHigh = c;
                    continue;
                }
                if (c >= 0xDC00 && c < 0xE000 && pendingHigh) {
                    c = 0x10000 + ((pendingHigh - 0xD800) << 10) + (c - 0xDC00);
                    pendingHigh = 0;
                } else if (pendingHigh) {
                    result.push_back(
                        static_cast<wchar_t>(pendingHigh));  // lone high surrogate kept
                    pendingHigh = 0;
                }
            }
            result.push_back(static_cast<wchar_t>(c));
        }
        done += take;
    }
    if (pendingHigh) result.push_back(static_cast<wchar_t>(pendingHigh));
    v = std::move(result);
    return *this;
}

}  // namespace quillon
