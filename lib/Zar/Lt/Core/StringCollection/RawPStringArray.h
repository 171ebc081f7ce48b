#pragma once

#include "Zar/Lt/Core/LittleEndianU32.h"
#include "Zar/Lt/Core/StringCollection/IStringReadOnlyCollection.h"
#include "Zar/Lt/Exceptions/Check.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace Zar::Lt::Core {

// A fixed block of length-prefixed strings, laid into a file byte for byte: the count of bytes in
// use, the count of strings, then the strings back to back, each as one length byte followed by its
// bytes. An empty block is all zero. The counts are little-endian in memory as in the file, whatever
// the machine's byte order. The capacity must keep the block free of padding, so that its size is
// exactly 8 + capacity bytes.
template <std::size_t capacity>
requires(capacity > 0 && capacity % alignof(uint32_t) == 0) struct RawPStringArray {
    LittleEndianU32 used = 0;
    LittleEndianU32 count = 0;
    uint8_t data[capacity] = {};

    // Appends the text with length as its length byte. The text is copied as a terminated C string:
    // the copy runs to its zero byte rather than by length, and that zero byte lands where the next
    // append will put its length byte. Callers pass terminated strings.
    constexpr void Append(char const* text, std::size_t length)
    {
        ZAR_CHECK(PreCondition, length <= 255u, "", ZAR_SOURCE_INFO_AT(kSourceFile, 73));
        // Widened to 64 bits before adding, not to size_t: a block read back from a file may hold any
        // used, and on a 32-bit machine the sum would wrap around to a small value that passes the check.
        uint64_t const next = uint64_t { used } + 1 + length;
        ZAR_CHECK(PreCondition, next <= capacity, "", ZAR_SOURCE_INFO_AT(kSourceFile, 76));
        ZAR_CHECK(
            PreCondition, text != nullptr || length == 0, "", ZAR_SOURCE_INFO_AT(kSourceFile, __LINE__));
        std::size_t const at = used;
        data[at] = static_cast<uint8_t>(length);
        CopyTerminated(text, at + 1);
        used = static_cast<uint32_t>(next);
        ++count;
    }

    // Appends every element of the collection with its size as its length.
    void Append(IStringReadOnlyCollection const& strings)
    {
        strings.Enumerate([this](int, std::string_view text) {
            Append(text.data(), text.size());
            return true;
        });
    }

private:
    static constexpr char const kSourceFile[] = "Zar/Lt/Core/StringCollection/RawPStringArray";

    // A block filled to exactly its capacity has no room for the terminating zero byte, which would
    // land just past data: in the file header that is the first byte after the header. The copy
    // therefore stops at the end of data; the stored strings are the same either way.
    constexpr void CopyTerminated(char const* text, std::size_t at)
    {
        if (text == nullptr) {
            if (at < capacity)
                data[at] = 0;
            return;
        }
        for (; at < capacity; ++at, ++text) {
            data[at] = static_cast<uint8_t>(*text);
            if (*text == '\0')
                break;
        }
    }
};

} // namespace Zar::Lt::Core
