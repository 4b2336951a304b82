// Binary archive: the byte layout in which plane types, solids, geometric items and the unit file
// are stored. The layout is the one desktop applications have always written, so files move freely
// between them and programs built on this library:
//   - integers little-endian in their own width; float and double IEEE-754 little-endian;
//   - a wide string is the byte 0xFF, the 16-bit marker 0xFFFE, then its length in UTF-16 units
//     (one byte below 0xFF; else 0xFF and a 16-bit length below 0xFFFE; else 0xFF, 0xFFFF and a
//     32-bit length; else additionally 0xFFFFFFFF and a 64-bit length), then UTF-16LE units
//     without a terminator. Characters above U+FFFF travel as surrogate pairs.
//   - the reader also takes the older narrow form: the same length prefixes without the marker,
//     then one byte per character (Windows-1252).
// An archive either stores (over an std::ostream) or loads (over an std::istream). Every failure is
// an ArchiveException with a cause code; reading past the end is cause endOfFile. The archive never
// owns its stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <string>

namespace quillon {

class ArchiveException : public std::runtime_error {
public:
    enum Cause : int {
        none = 0,
        generic = 1,
        readOnly = 2,
        endOfFile = 3,
        writeOnly = 4,
        badIndex = 5,
        badClass = 6,
        badSchema = 7,
    };

    explicit ArchiveException(int causeCode, const std::string& message = {});

    int cause;
};

class Archive {
public:
    // Storing archive: every operator<< appends to `out`.
    explicit Archive(std::ostream& out);
    // Loading archive: every operator>> consumes from `in`.
    explicit Archive(std::istream& in);

    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;

    bool IsStoring() const { return out_ != nullptr; }
    bool IsLoading() const { return in_ != nullptr; }

    Archive& operator<<(std::int8_t v);
    Archive& operator<<(std::uint8_t v);
    Archive& operator<<(std::int16_t v);
    Archive& operator<<(std::uint16_t v);
    Archive& operator<<(std::int32_t v);
    Archive& operator<<(std::uint32_t v);
    Archive& operator<<(std::int64_t v);
    Archive& operator<<(std::uint64_t v);
    Archive& operator<<(float v);
    Archive& operator<<(double v);
    Archive& operator<<(const std::wstring& v);

    Archive& operator>>(std::int8_t& v);
    Archive& operator>>(std::uint8_t& v);
    Archive& operator>>(std::int16_t& v);
    Archive& operator>>(std::uint16_t& v);
    Archive& operator>>(std::int32_t& v);
    Archive& operator>>(std::uint32_t& v);
    Archive& operator>>(std::int64_t& v);
    Archive& operator>>(std::uint64_t& v);
    Archive& operator>>(float& v);
    Archive& operator>>(double& v);
    Archive& operator>>(std::wstring& v);

    // Raw bytes, for layouts that are neither numbers nor strings.
    void Write(const void* data, std::size_t size);
    void Read(void* data, std::size_t size);

private:
    template <typename T>
    void storeLE(T v);
    template <typename T>
    T loadLE();

    std::ostream* out_ = nullptr;
    std::istream* in_ = nullptr;
};

}  // namespace quillon
