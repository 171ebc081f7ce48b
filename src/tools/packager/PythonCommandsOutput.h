#pragma once

#include "EnumerationOutput.h"

namespace Zar::ResourcesLibrary::Tools {

// Writes the Python Commands enumeration: the remote controller's fixed keys, then one command per
// icon that is neither "empty" nor a "_Selected" variant.
class PythonCommandsOutput : public EnumerationOutput {
public:
    using EnumerationOutput::EnumerationOutput;
    using EnumerationOutput::Write;

    void WriteHeader() override;
    void WriteFooter(int count) override;
    void Write(int index, std::string_view const& name) override;
};

} // namespace Zar::ResourcesLibrary::Tools
