#include "GreyMapping.h"

#include "Zar/ResourcesLibrary/Image/InputFile.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <sstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr int kMaxGrey = 255;
constexpr int kMaxLevel = 15;

int32_t RoundToInt(double value) { return static_cast<int32_t>(std::floor(value + 0.5)); }

std::string FormatNumber(double value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

} // namespace

int32_t GreyMapping::SrgbToLinear(double value)
{
    double const coded = value / kMaxGrey;
    double const linear = coded <= 0.04045 ? coded / 12.92 : std::pow((coded + 0.055) / 1.055, 2.4);
    return RoundToInt(linear * kLinearWhite);
}

uint8_t GreyMapping::LinearToSrgb(double linear)
{
    double const clamped = std::clamp(linear, 0.0, 1.0);
    double const coded = clamped <= 0.0031308 ? clamped * 12.92 : 1.055 * std::pow(clamped, 1 / 2.4) - 0.055;
    return static_cast<uint8_t>(std::clamp(RoundToInt(coded * kMaxGrey), 0, kMaxGrey));
}

void GreyMapping::UseSrgbLinearOfGrey()
{
    for (int grey = 0; grey <= kMaxGrey; ++grey)
        _linearOfGrey[grey] = SrgbToLinear(grey);
}

GreyMapping GreyMapping::Nearest()
{
    GreyMapping mapping;
    mapping._description = "nearest";
    mapping.UseSrgbLinearOfGrey();
    for (int level = 0; level <= kMaxLevel; ++level) {
        mapping._levels.push_back(static_cast<uint8_t>(level));
        mapping._linearOfLevel[level] = SrgbToLinear(17 * level);
        mapping._shownGrey[level] = static_cast<uint8_t>(17 * level);
    }
    for (int grey = 0; grey <= kMaxGrey; ++grey)
        mapping._levelOfGrey[grey] = static_cast<uint8_t>((grey * kMaxLevel + 127) / kMaxGrey);
    return mapping;
}

GreyMapping GreyMapping::Gamma(double gamma)
{
    ZAR_PRECONDITION(gamma > 0);
    GreyMapping mapping;
    mapping._description = "gamma " + FormatNumber(gamma);
    mapping.UseSrgbLinearOfGrey();
    for (int level = 0; level <= kMaxLevel; ++level) {
        mapping._levels.push_back(static_cast<uint8_t>(level));
        // The grey whose mapped value lands exactly on this level.
        double const grey = kMaxGrey * std::pow(static_cast<double>(level) / kMaxLevel, 1.0 / gamma);
        mapping._linearOfLevel[level] = SrgbToLinear(grey);
        mapping._shownGrey[level] = static_cast<uint8_t>(RoundToInt(grey));
    }
    for (int grey = 0; grey <= kMaxGrey; ++grey) {
        double const mapped = std::pow(static_cast<double>(grey) / kMaxGrey, gamma) * kMaxLevel;
        mapping._levelOfGrey[grey] = static_cast<uint8_t>(std::min(kMaxLevel, RoundToInt(mapped)));
    }
    return mapping;
}

GreyMapping GreyMapping::Table(std::array<double, kLevels4> const& luminances)
{
    GreyMapping mapping;
    mapping._description = "grey table";
    mapping.UseSrgbLinearOfGrey();
    double const top = luminances[kMaxLevel];
    for (int level = 0; level <= kMaxLevel; ++level) {
        mapping._levels.push_back(static_cast<uint8_t>(level));
        mapping._linearOfLevel[level] = RoundToInt(luminances[level] / top * kLinearWhite);
        mapping._shownGrey[level] = LinearToSrgb(luminances[level] / top);
    }
    for (int grey = 0; grey <= kMaxGrey; ++grey)
        mapping._levelOfGrey[grey] = mapping.NearestLevelOfLinear(mapping._linearOfGrey[grey]);
    return mapping;
}

GreyMapping GreyMapping::Threshold(int threshold)
{
    GreyMapping mapping;
    mapping._mono = true;
    mapping._description = "threshold " + std::to_string(threshold);
    mapping.UseSrgbLinearOfGrey();
    mapping._levels = { 0, kMaxLevel };
    for (int level = 0; level <= kMaxLevel; ++level) {
        mapping._linearOfLevel[level] = level == kMaxLevel ? kLinearWhite : 0;
        mapping._shownGrey[level] = level == kMaxLevel ? kMaxGrey : 0;
    }
    for (int grey = 0; grey <= kMaxGrey; ++grey)
        mapping._levelOfGrey[grey] = grey >= threshold ? kMaxLevel : 0;
    return mapping;
}

uint8_t GreyMapping::NearestLevelOfLinear(int32_t linear) const
{
    uint8_t best = _levels.front();
    int64_t bestDistance = INT64_MAX;
    for (uint8_t const level : _levels) {
        int64_t const distance = std::abs(static_cast<int64_t>(linear) - _linearOfLevel[level]);
        if (distance < bestDistance) {
            best = level;
            bestDistance = distance;
        }
    }
    return best;
}

uint8_t GreyMapping::Luma(uint8_t red, uint8_t green, uint8_t blue)
{
    return static_cast<uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

std::array<double, GreyMapping::kLevels4> GreyMapping::ParseTable(std::string const& text)
{
    std::vector<double> numbers;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        line = line.substr(0, line.find('#'));
        for (char& c : line)
            if (c == ',' || c == '\t' || c == '\r')
                c = ' ';
        std::istringstream words(line);
        std::string word;
        while (words >> word) {
            double value = 0;
            auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
            if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(value)
                || value < 0)
                throw ResourcesLibraryException(
                    ZAR_SOURCE_INFO(), "'" + word + "' is not a luminance (a number from 0 up)");
            numbers.push_back(value);
        }
    }
    if (numbers.size() != kLevels4)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "it holds " + std::to_string(numbers.size())
                + " numbers; it needs 16, the luminance of each level from 0 to 15");
    for (std::size_t level = 1; level < numbers.size(); ++level)
        if (numbers[level] < numbers[level - 1])
            throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
                "the luminance of level " + std::to_string(level) + " is below that of level "
                    + std::to_string(level - 1) + "; the numbers must ascend");
    if (numbers.back() <= 0)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "the luminance of level 15 must be above 0");
    std::array<double, kLevels4> table {};
    std::copy(numbers.begin(), numbers.end(), table.begin());
    return table;
}

std::optional<std::string> GreyMapping::FromOptions(std::optional<std::string> const& gamma,
    std::optional<std::string> const& table, std::optional<GreyMapping>& mapping)
{
    if (gamma && table)
        return "give --gamma or --grey-table, not both";
    if (gamma) {
        double value = 0;
        auto const [end, error] = std::from_chars(gamma->data(), gamma->data() + gamma->size(), value);
        if (gamma->empty() || error != std::errc() || end != gamma->data() + gamma->size()
            || !std::isfinite(value) || value < 0.1 || value > 10)
            return "--gamma takes a number from 0.1 to 10, not '" + *gamma + "'";
        mapping = Gamma(value);
    }
    if (table) {
        // Read whole but bounded, as every input of the tools.
        auto const bytes = Zar::ResourcesLibrary::Image::InputFile::ReadWhole(table->c_str());
        if (!bytes)
            return "--grey-table: cannot read " + *table;
        try {
            mapping = Table(ParseTable(std::string(bytes->begin(), bytes->end())));
        } catch (ResourcesLibraryException const& error) {
            return "--grey-table " + *table + ": " + error.what();
        }
    }
    return std::nullopt;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
