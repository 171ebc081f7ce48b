#include "OptionParser.h"

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools::Inspect {

OptionParser::OptionParser(std::vector<Option> options)
    : _options(std::move(options))
{
}

bool OptionParser::Parse(std::vector<std::string> const& arguments)
{
    bool optionsEnded = false;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        std::string const& argument = arguments[index];
        if (optionsEnded || argument.size() < 2 || argument[0] != '-')
            _operands.push_back(argument);
        else if (argument == "--")
            optionsEnded = true;
        else if (argument[1] == '-' ? !TakeLong(arguments, index) : !TakeShort(arguments, index))
            return false;
    }
    return true;
}

bool OptionParser::TakeLong(std::vector<std::string> const& arguments, std::size_t& index)
{
    std::string const text = arguments[index].substr(2);
    auto const equals = text.find('=');
    std::string const name = text.substr(0, equals);
    Option const* option = FindLong(name);
    if (!option) {
        _error = "unknown option '--" + name + "'";
        return false;
    }
    if (!option->_takesValue) {
        if (equals != std::string::npos) {
            _error = "option '--" + name + "' takes no value";
            return false;
        }
        _values[name] = "";
        return true;
    }
    if (equals != std::string::npos) {
        _values[name] = text.substr(equals + 1);
        return true;
    }
    if (index + 1 >= arguments.size()) {
        _error = "option '--" + name + "' needs a value";
        return false;
    }
    _values[name] = arguments[++index];
    return true;
}

bool OptionParser::TakeShort(std::vector<std::string> const& arguments, std::size_t& index)
{
    std::string const& argument = arguments[index];
    Option const* option = FindShort(argument[1]);
    if (!option) {
        _error = std::string("unknown option '-") + argument[1] + "'";
        return false;
    }
    if (!option->_takesValue) {
        if (argument.size() > 2) {
            _error = std::string("option '-") + argument[1] + "' takes no value";
            return false;
        }
        _values[option->_long] = "";
        return true;
    }
    if (argument.size() > 2) {
        _values[option->_long] = argument.substr(2);
        return true;
    }
    if (index + 1 >= arguments.size()) {
        _error = std::string("option '-") + argument[1] + "' needs a value";
        return false;
    }
    _values[option->_long] = arguments[++index];
    return true;
}

bool OptionParser::Has(std::string const& name) const { return _values.contains(name); }

std::optional<std::string> OptionParser::Value(std::string const& name) const
{
    auto const found = _values.find(name);
    if (found == _values.end())
        return std::nullopt;
    return found->second;
}

OptionParser::Option const* OptionParser::FindLong(std::string const& name) const
{
    auto const found
        = std::find_if(_options.begin(), _options.end(), [&](Option const& o) { return o._long == name; });
    return found == _options.end() ? nullptr : &*found;
}

OptionParser::Option const* OptionParser::FindShort(char name) const
{
    auto const found = std::find_if(
        _options.begin(), _options.end(), [&](Option const& o) { return o._short != 0 && o._short == name; });
    return found == _options.end() ? nullptr : &*found;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
