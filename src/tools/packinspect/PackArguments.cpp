#include "PackArguments.h"

#include "Command.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;

OptionParser::Option const PackArguments::kIconOption { "icon", 0, true };
OptionParser::Option const PackArguments::kScreenOption { "screen", 0, true };
char const* const PackArguments::kDefaultIcon = "32x24";
char const* const PackArguments::kDefaultScreen = "256x64";

std::optional<PackArguments> PackArguments::Of(Invocation& invocation)
{
    auto const path = SinglePack(invocation);
    PackArguments arguments { path.value_or("") };
    if (!path || !ParseGeometries(invocation, arguments._icon, arguments._screen))
        return std::nullopt;
    return arguments;
}

std::optional<std::string> PackArguments::SinglePack(Invocation& invocation)
{
    auto const& operands = invocation.Operands();
    if (operands.size() != 1) {
        invocation.UsageError(operands.empty() ? "the pack file is missing" : "one pack file at a time");
        return std::nullopt;
    }
    return operands[0];
}

bool PackArguments::ParseGeometries(Invocation& invocation, ImageGeometry& icon, ImageGeometry& screen)
{
    std::string const iconText = invocation.Options().Value(kIconOption._long).value_or(kDefaultIcon);
    std::string const screenText = invocation.Options().Value(kScreenOption._long).value_or(kDefaultScreen);
    auto const parsedIcon = ImageGeometry::Parse(iconText);
    auto const parsedScreen = ImageGeometry::Parse(screenText);
    if (!parsedIcon || !parsedScreen) {
        invocation.UsageError("a size is WxH, two numbers from 1 to 65535: '"
            + (parsedIcon ? screenText : iconText) + "' is not");
        return false;
    }
    if (parsedIcon->Size() >= PackFormat::kScreenThreshold) {
        invocation.UsageError("an icon of " + iconText + " takes " + std::to_string(parsedIcon->Size())
            + " bytes; icons are below " + std::to_string(PackFormat::kScreenThreshold) + " bytes");
        return false;
    }
    if (parsedScreen->Size() < PackFormat::kScreenThreshold
        || parsedScreen->Size() > PackFormat::kMaxFileSize) {
        invocation.UsageError("a screen of " + screenText + " takes " + std::to_string(parsedScreen->Size())
            + " bytes; screens take from " + std::to_string(PackFormat::kScreenThreshold)
            + " bytes to the whole store");
        return false;
    }
    icon = *parsedIcon;
    screen = *parsedScreen;
    return true;
}

std::string PackArguments::SizeOptionsHelp()
{
    return "      --icon=WxH      icon size in pixels (default " + std::string(kDefaultIcon) + ")\n"
        + "      --screen=WxH    screen size in pixels (default " + std::string(kDefaultScreen) + ")\n";
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
