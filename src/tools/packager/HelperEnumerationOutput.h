#pragma once

#include "EnumerationOutput.h"

namespace Zar::ResourcesLibrary::Tools {

// Writes the C++ source of GetString(value), which maps an enumeration value back to its name
// through a table indexed from 0.
class HelperEnumerationOutput : public EnumerationOutput {
public:
    using EnumerationOutput::EnumerationOutput;
    using EnumerationOutput::Write;

    void WriteHeader() override;
    void WriteFooter(int count) override;
    void Write(int index, std::string_view const& name) override;
};

} // namespace Zar::ResourcesLibrary::Tools
