#pragma once

// What the fuzz targets share: a check that stops the run with a readable reason (libFuzzer then
// saves the input that broke it), and the exact copy of an input that makes any read past its end
// visible to the address sanitizer.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace ZarFuzz {

[[noreturn]] inline void Fail(char const* condition, char const* file, int line)
{
    std::fprintf(stderr, "%s:%d: invariant broken: %s\n", file, line, condition);
    std::abort();
}

// A heap copy of exactly the input's bytes, without a terminator: code that treats a sized buffer
// as a C string reads past the end and the sanitizer reports it.
class ExactCopy {
public:
    ExactCopy(uint8_t const* data, size_t size)
        : _size(size)
        , _bytes(new char[size == 0 ? 1 : size])
    {
        for (size_t i = 0; i < size; ++i)
            _bytes[i] = static_cast<char>(data[i]);
    }

    char const* Data() const { return _bytes.get(); }
    size_t Size() const { return _size; }
    std::string_view View() const { return { _bytes.get(), _size }; }

private:
    size_t _size;
    std::unique_ptr<char[]> _bytes;
};

} // namespace ZarFuzz

#define ZAR_FUZZ_CHECK(condition)                                                                            \
    ((condition) ? static_cast<void>(0) : ::ZarFuzz::Fail(#condition, __FILE__, __LINE__))
