#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The options of one subcommand, parsed over its option table as getopt_long does: "--name value",
// "--name=value", "-x value", "-xvalue", switches without a value (short ones may run together), and
// "--" to end the options; options may follow the operands. A lone "-" is an operand. Arguments are
// taken as bytes, so operands and values keep them whether they are UTF-8 or not.
class OptionParser {
public:
    struct Option {
        std::string _long;
        char _short = 0;
        bool _takesValue = false;
    };

    explicit OptionParser(std::vector<Option> options);

    // Returns false and sets Error() on an unknown option, a missing value or a value given to a
    // switch.
    bool Parse(std::vector<std::string> const& arguments);

    bool Has(std::string const& name) const;
    // The last value given for the option, if any.
    std::optional<std::string> Value(std::string const& name) const;
    std::vector<std::string> const& Operands() const { return _operands; }
    std::string const& Error() const { return _error; }

private:
    bool ParseLong(std::string const& text, std::vector<std::string> const& arguments, std::size_t& at);
    bool ParseShorts(std::string const& text, std::vector<std::string> const& arguments, std::size_t& at);
    template <typename Predicate> Option const* Find(Predicate const& matches) const;
    bool Fail(std::string error);

    std::vector<Option> _options;
    std::map<std::string, std::string> _values;
    std::vector<std::string> _operands;
    std::string _error;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
