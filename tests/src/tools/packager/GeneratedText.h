#pragma once

// The text of a generated file, for the tests of the enumeration writers: the writer driven the way
// the exporter drives it, and the text split into lines for line-by-line comparisons.
//
//   std::string const text = Generate<CppEnumerationOutput>({ "Icon", 100, true }, { "Play", "Stop" });
//   EXPECT_THAT(Lines(text), ElementsAreArray(expected));

#include "EnumerationOutput.h"

#include "Zar/Lt/Core/StringCollection/StringCollection.h"

#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace PackagerTests {

// The whole file: header, the names from offset on, footer with the count the writer reached.
template <class Output>
std::string Generate(Zar::ResourcesLibrary::Tools::EnumerationOption const& option,
    Zar::Lt::Core::StringCollection const& names, int offset = 0)
{
    std::ostringstream stream;
    Output output(stream, option);
    output.WriteHeader();
    output.Write(names, offset);
    output.WriteFooter(output.Count());
    return stream.str();
}

template <class Output>
std::string Generate(Zar::ResourcesLibrary::Tools::EnumerationOption const& option,
    std::initializer_list<std::string_view> names, int offset = 0)
{
    Zar::Lt::Core::StringCollection collection;
    collection.Append(names);
    return Generate<Output>(option, collection, offset);
}

// Splits a text whose every line ends with a line feed; a missing final line feed shows as a last
// line of its own so that the comparison fails.
inline std::vector<std::string> Lines(std::string const& text)
{
    std::vector<std::string> lines;
    std::string::size_type start = 0;
    while (start < text.size()) {
        auto const end = text.find('\n', start);
        if (end == std::string::npos) {
            lines.push_back("<no line feed>" + text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

} // namespace PackagerTests
