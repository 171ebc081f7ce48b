#include "Zar/ResourcesLibrary/Image/codec/BmpLayout.h"

#include <type_traits>

namespace Zar::ResourcesLibrary::Image::BmpLayout {

namespace {

template <typename Header> Header ReadHeader(uint8_t const* bytes)
{
    Header header {};
    ForEachField(header, [&bytes](auto& field) {
        using Unsigned = std::make_unsigned_t<std::remove_reference_t<decltype(field)>>;
        Unsigned value = 0;
        for (size_t i = 0; i < sizeof(field); ++i)
            value = static_cast<Unsigned>(value | static_cast<Unsigned>(Unsigned { *bytes++ } << (8 * i)));
        field = static_cast<std::remove_reference_t<decltype(field)>>(value);
    });
    return header;
}

template <typename Header> void AppendHeader(std::vector<uint8_t>& bytes, Header const& header)
{
    ForEachField(header, [&bytes](auto const& field) {
        auto const value = static_cast<std::make_unsigned_t<std::remove_cvref_t<decltype(field)>>>(field);
        for (size_t i = 0; i < sizeof(field); ++i)
            bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    });
}

} // namespace

BITMAPFILEHEADER ReadFileHeader(uint8_t const* bytes) { return ReadHeader<BITMAPFILEHEADER>(bytes); }

BITMAPINFOHEADER ReadInfoHeader(uint8_t const* bytes) { return ReadHeader<BITMAPINFOHEADER>(bytes); }

void Append(std::vector<uint8_t>& bytes, BITMAPFILEHEADER const& header) { AppendHeader(bytes, header); }

void Append(std::vector<uint8_t>& bytes, BITMAPINFOHEADER const& header) { AppendHeader(bytes, header); }

} // namespace Zar::ResourcesLibrary::Image::BmpLayout
