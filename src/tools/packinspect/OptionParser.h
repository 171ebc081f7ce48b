#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// GNU-style options of one subcommand: "--name value", "--name=value", "-x value", "-xvalue",
// switches without a value, and "--" to end the options. Anything not starting with '-' (and a lone
// "-") is an operand.
class OptionParser {
public:
    struct Option {
        std::string _long;
        char _short = 0;
        bool _takesValue = false;
    };

    explicit OptionParser(std::vector<Option> options);

    // Returns false and sets Error() on an unknown option or a missing value.
    bool Parse(std::vector<std::string> const& arguments);

    bool Has(std::string const& name) const;
    // The last value given for the option, if any.
    std::optional<std::string> Value(std::string const& name) const;
    std::vector<std::string> const& Operands() const { return _operands; }
    std::string const& Error() const { return _error; }

private:
    Option const* FindLong(std::string const& name) const;
    Option const* FindShort(char name) const;
    bool TakeLong(std::vector<std::string> const& arguments, std::size_t& index);
    bool TakeShort(std::vector<std::string> const& arguments, std::size_t& index);

    std::vector<Option> _options;
    std::map<std::string, std::string> _values;
    std::vector<std::string> _operands;
    std::string _error;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
