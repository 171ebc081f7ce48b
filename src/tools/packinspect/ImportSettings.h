#pragma once

#include "Ditherer.h"
#include "GreyMapping.h"
#include "ImageFit.h"

#include <QSize>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// What one import is asked to do: the files, the tree folder they go to, and each conversion step.
struct ImportSettings {
    std::vector<std::string> _files;
    // ROOT/icons or ROOT/screens.
    std::string _folder;
    // The name of the one file given; its stem otherwise.
    std::optional<std::string> _name;
    std::optional<int> _frame;
    std::optional<QSize> _size;
    ImageFit::Mode _fit = ImageFit::Mode::None;
    // The grey that transparent pixels show: black, the unlit pixel, unless asked otherwise.
    uint8_t _background = 0;
    bool _invert = false;
    GreyMapping _mapping = GreyMapping::Nearest();
    Ditherer::Mode _dither = Ditherer::Mode::None;
    // Replace the file of a name that is listed already.
    bool _force = false;
    std::optional<std::string> _preview;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
