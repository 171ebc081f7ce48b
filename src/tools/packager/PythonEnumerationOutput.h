#pragma once

#include "EnumerationOutput.h"

namespace Zar::ResourcesLibrary::Tools {

// Writes a Python module declaring the entries as an IntEnum, so that test scripts use the same
// numbers as the firmware.
class PythonEnumerationOutput : public EnumerationOutput {
public:
    using EnumerationOutput::EnumerationOutput;
    using EnumerationOutput::Write;

    void WriteHeader() override;
    void WriteFooter(int count) override;
    void Write(int index, std::string_view const& name) override;
};

} // namespace Zar::ResourcesLibrary::Tools
