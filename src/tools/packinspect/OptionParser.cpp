#include "OptionParser.h"

#include <QCommandLineParser>
#include <QStringList>

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

// Arguments are bytes, file names among them, in whatever encoding they were made: Latin-1 maps each
// byte to one character and back, so that every argument, UTF-8 or not, comes out as it went in.
QString FromBytes(std::string const& bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

std::string ToBytes(QString const& text) { return text.toLatin1().toStdString(); }

QCommandLineOption ToQt(OptionParser::Option const& option)
{
    QStringList names { FromBytes(option._long) };
    if (option._short != 0)
        names.prepend(QString(QChar(option._short)));
    // Qt takes an option with a value name as one that needs a value.
    return QCommandLineOption(names, QString(), option._takesValue ? QStringLiteral("value") : QString());
}

// Qt names an unknown option without its dashes; the argument it came from tells how it was written.
std::string Spelled(std::string const& name, std::vector<std::string> const& arguments)
{
    for (auto const& argument : arguments) {
        if (argument == "--")
            break;
        if (argument == "--" + name || argument.starts_with("--" + name + "="))
            return "--" + name;
    }
    return "-" + name;
}

// The argument Qt quotes in "Missing value after '--icon'." and the like.
std::string Quoted(std::string const& text)
{
    auto const first = text.find('\'');
    auto const last = text.rfind('\'');
    return first == last ? text : text.substr(first + 1, last - first - 1);
}

} // namespace

OptionParser::OptionParser(std::vector<Option> options)
    : _options(std::move(options))
{
}

bool OptionParser::Parse(std::vector<std::string> const& arguments)
{
    QCommandLineParser parser;
    for (auto const& option : _options)
        parser.addOption(ToQt(option));
    // Qt takes the first argument as the program's name.
    QStringList qtArguments { QStringLiteral("packinspect") };
    for (auto const& argument : arguments)
        qtArguments << FromBytes(argument);
    if (!parser.parse(qtArguments)) {
        std::vector<std::string> unknown;
        for (auto const& name : parser.unknownOptionNames())
            unknown.push_back(ToBytes(name));
        _error = ErrorOf(ToBytes(parser.errorText()), unknown, arguments);
        return false;
    }
    for (auto const& option : _options) {
        QString const name = FromBytes(option._long);
        if (parser.isSet(name))
            _values[option._long] = option._takesValue ? ToBytes(parser.value(name)) : std::string();
    }
    for (auto const& operand : parser.positionalArguments())
        _operands.push_back(ToBytes(operand));
    return true;
}

std::string OptionParser::ErrorOf(std::string const& qtError, std::vector<std::string> const& unknown,
    std::vector<std::string> const& arguments)
{
    if (!unknown.empty())
        return "unknown option '" + Spelled(unknown.front(), arguments) + "'";
    if (qtError.starts_with("Missing value"))
        return "option '" + Quoted(qtError) + "' needs a value";
    if (qtError.starts_with("Unexpected value"))
        return "option '" + Quoted(qtError) + "' takes no value";
    return qtError;
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
