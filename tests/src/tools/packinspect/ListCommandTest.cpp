#include "CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using testing::HasSubstr;
using testing::StartsWith;
using TestSupport::ReadText;

TEST(ListCommandTest, ListTakesTheGeometryFromItsOptions)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    auto const defaults = Inspect({ "list", folder.Path() });
    EXPECT_EQ(defaults._status, 0);
    EXPECT_THAT(defaults._out, StartsWith(folder.Path() + "\nversion       1.2.3.4\n"));
    EXPECT_THAT(defaults._out, HasSubstr("icons         12 (32x24, 384 bytes each, 2 sectors)\n"));

    auto const other = Inspect({ "list", "--icon=16x16", "--screen", "256x64", folder.Path() });
    EXPECT_EQ(other._status, 1);
    EXPECT_THAT(other._out, HasSubstr("icons         12 (16x16, 128 bytes each, 1 sectors)\n"));
    EXPECT_THAT(
        other._out, HasSubstr("problem: the geometry --icon 16x16 --screen 256x64 lays 4 sectors out"));
}

TEST(ListCommandTest, ListAndRenderRefuseBadSizes)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    for (std::string const command : { "list", "render" }) {
        std::string const name = "packinspect " + command;
        auto const withOptions = [&](std::string const& option) {
            std::vector<std::string> arguments { command, option, folder.Path() };
            if (command == "render")
                arguments.insert(arguments.end(), { "-o", folder.In("x.png") });
            return Inspect(arguments);
        };
        EXPECT_EQ(withOptions("--icon=32")._err,
            UsageText(name, "a size is WxH, two numbers from 1 to 65535: '32' is not"));
        EXPECT_EQ(withOptions("--screen=0x64")._err,
            UsageText(name, "a size is WxH, two numbers from 1 to 65535: '0x64' is not"));
        EXPECT_EQ(withOptions("--icon=64x128")._err,
            UsageText(name, "an icon of 64x128 takes 4096 bytes; icons are below 4096 bytes"));
        EXPECT_EQ(withOptions("--screen=32x24")._err,
            UsageText(
                name, "a screen of 32x24 takes 384 bytes; screens take from 4096 bytes to the whole store"));
        auto const huge = withOptions("--screen=2048x2048");
        EXPECT_EQ(huge._status, 2);
        EXPECT_EQ(huge._err,
            UsageText(name,
                "a screen of 2048x2048 takes 2097152 bytes; screens take from 4096 bytes "
                "to the whole store"));
        EXPECT_EQ(Inspect({ command, "--icon" })._err, UsageText(name, "option '--icon' needs a value"));
    }
    EXPECT_FALSE(std::filesystem::exists(folder.In("x.png")));
}

TEST(ListCommandTest, ListOfSomethingElseIsAProblem)
{
    PackFolder const folder(Bytes(8192, 0xFF));
    auto const result = Inspect({ "list", folder.Path() });
    EXPECT_EQ(result._status, 1);
    EXPECT_THAT(result._out, HasSubstr("problem: not a pack"));
}

TEST(EndToEndTest, ListShowsWhatPackagerWrote)
{
    ExampleRun const run;
    auto const listing = run.Inspect("list oled.pack");
    ASSERT_EQ(listing.exitCode, 0) << listing.output;
    auto const listed = ListedValues(listing.output);
    EXPECT_EQ(listed.at("icon"), Enumerators(ReadText(run.Folder() / "Icons.h")));
    EXPECT_EQ(listed.at("screen"), Enumerators(ReadText(run.Folder() / "Screens.h")));
    EXPECT_EQ(listed.at("icon").size(), 12u);
    EXPECT_EQ(listed.at("screen").size(), 3u);

    // packager's summary counts the same sectors and bytes as the listing's store line.
    std::smatch summary;
    ASSERT_TRUE(std::regex_search(run.Packager().output, summary,
        std::regex(R"(^1\.2\.3\.4, 12 icons at sector 12, 3 screens, (\d+) sectors, (\d+) bytes)")));
    EXPECT_THAT(listing.output,
        HasSubstr(
            "store         " + summary[1].str() + " of 256 sectors used (" + summary[2].str() + " bytes)"));
    EXPECT_THAT(listing.output, HasSubstr("version       1.2.3.4\n"));
}
