#pragma once

#include "EnumerationOption.h"

#include "Zar/Lt/Core/StringCollection/IStringReadOnlyCollection.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace Zar::ResourcesLibrary::Tools {

// Base of the writers of the generated source files. The exporter calls WriteHeader(), then
// Write(names, offset), then WriteFooter(Count()); each derived writer decides what the pieces look
// like and writes them straight to the stream, so a failure halfway leaves the text written so far.
class EnumerationOutput {
public:
    EnumerationOutput(std::ostream& stream, EnumerationOption const& option);
    virtual ~EnumerationOutput();

    EnumerationOutput(EnumerationOutput const&) = delete;
    EnumerationOutput& operator=(EnumerationOutput const&) = delete;

    virtual void WriteHeader() = 0;
    virtual void WriteFooter(int count) = 0;
    virtual void Write(int index, std::string_view const& name) = 0;

    // Writes one enumerator per name from position offset on, numbered from 0, counting them.
    void Write(Zar::Lt::Core::IStringReadOnlyCollection const& names, int offset);

    // The number of enumerators written so far.
    int Count() const;

    // The name as it may stand in an identifier: blanks and line ends around it removed and every
    // '-' turned into '_'. Public so that packinspect check spells names as the writers do.
    static std::string CleanName(std::string_view name);

protected:
    // A cleaned name as it is written for an enumerator: through ToCapital when the option asks.
    std::string EnumeratorName(std::string_view cleanName) const;

    std::ostream& _stream;
    std::string _name;
    int32_t _first;
    bool _capitalize;
    int32_t _count;
};

} // namespace Zar::ResourcesLibrary::Tools
