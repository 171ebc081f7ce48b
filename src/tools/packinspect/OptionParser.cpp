#include "OptionParser.h"

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools::Inspect {

OptionParser::OptionParser(std::vector<Option> options)
    : _options(std::move(options))
{
}

bool OptionParser::Parse(std::vector<std::string> const& arguments)
{
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        std::string const& argument = arguments[at];
        if (argument == "--") {
            _operands.insert(
                _operands.end(), arguments.begin() + static_cast<std::ptrdiff_t>(at) + 1, arguments.end());
            return true;
        }
        bool parsed = true;
        if (argument.starts_with("--"))
            parsed = ParseLong(argument.substr(2), arguments, at);
        else if (argument.size() > 1 && argument[0] == '-')
            parsed = ParseShorts(argument.substr(1), arguments, at);
        else
            _operands.push_back(argument);
        if (!parsed)
            return false;
    }
    return true;
}

// "--name", "--name=value" or "--name value".
bool OptionParser::ParseLong(
    std::string const& text, std::vector<std::string> const& arguments, std::size_t& at)
{
    auto const equals = text.find('=');
    std::string const name = text.substr(0, equals);
    Option const* option = Find([&name](Option const& candidate) { return candidate._long == name; });
    if (option == nullptr)
        return Fail("unknown option '--" + name + "'");
    if (!option->_takesValue) {
        if (equals != std::string::npos)
            return Fail("option '--" + name + "' takes no value");
        _values[option->_long] = std::string();
        return true;
    }
    if (equals != std::string::npos) {
        _values[option->_long] = text.substr(equals + 1);
        return true;
    }
    if (at + 1 >= arguments.size())
        return Fail("option '--" + name + "' needs a value");
    _values[option->_long] = arguments[++at];
    return true;
}

// "-x", "-xy" (switches run together), "-xvalue" or "-x value".
bool OptionParser::ParseShorts(
    std::string const& text, std::vector<std::string> const& arguments, std::size_t& at)
{
    for (std::size_t letter = 0; letter < text.size(); ++letter) {
        char const name = text[letter];
        Option const* option = Find([name](Option const& candidate) { return candidate._short == name; });
        if (option == nullptr)
            return Fail(std::string("unknown option '-") + name + "'");
        if (!option->_takesValue) {
            _values[option->_long] = std::string();
            continue;
        }
        if (letter + 1 < text.size()) {
            _values[option->_long] = text.substr(letter + 1);
            return true;
        }
        if (at + 1 >= arguments.size())
            return Fail(std::string("option '-") + name + "' needs a value");
        _values[option->_long] = arguments[++at];
        return true;
    }
    return true;
}

template <typename Predicate> OptionParser::Option const* OptionParser::Find(Predicate const& matches) const
{
    auto const found = std::find_if(_options.begin(), _options.end(), matches);
    return found == _options.end() ? nullptr : &*found;
}

bool OptionParser::Fail(std::string error)
{
    _error = std::move(error);
    return false;
}

bool OptionParser::Has(std::string const& name) const { return _values.contains(name); }

std::optional<std::string> OptionParser::Value(std::string const& name) const
{
    auto const found = _values.find(name);
    if (found == _values.end())
        return std::nullopt;
    return found->second;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
