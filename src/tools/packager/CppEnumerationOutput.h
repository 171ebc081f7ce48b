#pragma once

#include "EnumerationOutput.h"

namespace Zar::ResourcesLibrary::Tools {

// Writes the C++ header declaring the enumeration, its index type, the struct with First, Last and
// Count, and the comparisons between the enumeration and its index type.
class CppEnumerationOutput : public EnumerationOutput {
public:
    using EnumerationOutput::EnumerationOutput;
    using EnumerationOutput::Write;

    void WriteHeader() override;
    void WriteFooter(int count) override;
    void Write(int index, std::string_view const& name) override;
};

} // namespace Zar::ResourcesLibrary::Tools
