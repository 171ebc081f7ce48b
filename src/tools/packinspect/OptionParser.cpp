#include "OptionParser.h"

#include <QCommandLineParser>
#include <QStringList>

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

QCommandLineOption ToQt(OptionParser::Option const& option)
{
    QStringList names { QString::fromStdString(option._long) };
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
        qtArguments << QString::fromStdString(argument);
    if (!parser.parse(qtArguments)) {
        std::vector<std::string> unknown;
        for (auto const& name : parser.unknownOptionNames())
            unknown.push_back(name.toStdString());
        _error = ErrorOf(parser.errorText().toStdString(), unknown, arguments);
        return false;
    }
    for (auto const& option : _options) {
        QString const name = QString::fromStdString(option._long);
        if (parser.isSet(name))
            _values[option._long] = option._takesValue ? parser.value(name).toStdString() : std::string();
    }
    for (auto const& operand : parser.positionalArguments())
        _operands.push_back(operand.toStdString());
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
