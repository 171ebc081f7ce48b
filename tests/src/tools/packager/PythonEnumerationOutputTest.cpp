#include "PythonEnumerationOutput.h"

#include "GeneratedText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utf8.h>

#include <sstream>
#include <string>
#include <vector>

using PackagerTests::Generate;
using PackagerTests::Lines;
using testing::ElementsAreArray;
using Zar::ResourcesLibrary::Tools::EnumerationOption;
using Zar::ResourcesLibrary::Tools::PythonEnumerationOutput;

namespace {

std::string const kIconHeader = "from enum import IntEnum, auto, unique\n@unique\nclass Icon(IntEnum):\n";

} // namespace

TEST(PythonEnumerationOutputTest, IconsWorkedExampleLineByLine)
{
    std::string const text
        = Generate<PythonEnumerationOutput>({ "Icon", 100, true }, { "Play", "Stop_Selected" });
    std::vector<std::string> const expected {
        "from enum import IntEnum, auto, unique",
        "@unique",
        "class Icon(IntEnum):",
        "    Play = 100",
        "    Stop_Selected = auto()",
        "",
        "#2 Icon(s)",
    };
    EXPECT_THAT(Lines(text), ElementsAreArray(expected));
    EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(PythonEnumerationOutputTest, ScreensWithFirstZeroAreAllAuto)
{
    EXPECT_EQ(Generate<PythonEnumerationOutput>({ "Screen", 0, true }, { "Play", "Stop_Selected" }),
        "from enum import IntEnum, auto, unique\n@unique\nclass Screen(IntEnum):\n"
        "    Play = auto()\n"
        "    Stop_Selected = auto()\n"
        "\n#2 Screen(s)\n");
}

TEST(PythonEnumerationOutputTest, NoNamesGiveNoBodyLines)
{
    EXPECT_EQ(Generate<PythonEnumerationOutput>({ "Icon", 100, true }, {}), kIconHeader + "\n#0 Icon(s)\n");
}

TEST(PythonEnumerationOutputTest, CommentCountsTheEnumeratorsWrittenNotTheWholeList)
{
    EXPECT_EQ(Generate<PythonEnumerationOutput>(
                  { "Screen", 0, true }, { "icon1", "icon2", "icon3", "main", "menu" }, 3),
        "from enum import IntEnum, auto, unique\n@unique\nclass Screen(IntEnum):\n"
        "    Main = auto()\n"
        "    Menu = auto()\n"
        "\n#2 Screen(s)\n");
}

TEST(PythonEnumerationOutputTest, FirstTenAndNegativeFirstArePrintedSigned)
{
    EXPECT_EQ(Generate<PythonEnumerationOutput>({ "Icon", 10, true }, { "a", "b" }),
        kIconHeader + "    A = 10\n    B = auto()\n\n#2 Icon(s)\n");
    EXPECT_EQ(Generate<PythonEnumerationOutput>({ "Icon", -20, true }, { "a", "b" }),
        kIconHeader + "    A = -20\n    B = auto()\n\n#2 Icon(s)\n");
}

TEST(PythonEnumerationOutputTest, NamesAreTrimmedAndDashesReplaced)
{
    EXPECT_EQ(Generate<PythonEnumerationOutput>({ "Icon", 0, true }, { " Play\r", "Stop-Play" }),
        kIconHeader + "    Play = auto()\n    Stop_Play = auto()\n\n#2 Icon(s)\n");
}

TEST(PythonEnumerationOutputTest, NamesStayAsTheyAreWithoutCapitalisation)
{
    EXPECT_EQ(Generate<PythonEnumerationOutput>({ "Icon", 0, false }, { "play_stop" }),
        kIconHeader + "    play_stop = auto()\n\n#1 Icon(s)\n");
}

TEST(PythonEnumerationOutputTest, ValueGoesOnIndexZeroOnly)
{
    std::ostringstream stream;
    PythonEnumerationOutput output(stream, { "Icon", 100, true });
    output.Write(1, "Play");
    output.Write(0, "Stop");
    EXPECT_EQ(stream.str(), "    Play = auto()\n    Stop = 100\n");
}

TEST(PythonEnumerationOutputTest, FooterUsesTheCountItIsGiven)
{
    std::ostringstream stream;
    PythonEnumerationOutput output(stream, { "Screen", 0, true });
    output.WriteFooter(-3);
    EXPECT_EQ(stream.str(), "\n#-3 Screen(s)\n");
}

TEST(PythonEnumerationOutputTest, InvalidUtf8LeavesTheTextWrittenBeforeIt)
{
    std::ostringstream stream;
    PythonEnumerationOutput output(stream, { "Icon", 100, true });
    output.WriteHeader();
    EXPECT_THAT([&] { output.Write(0, "\xff"); },
        testing::ThrowsMessage<utf8::invalid_utf8>(testing::StrEq("Invalid UTF-8")));
    EXPECT_EQ(stream.str(), kIconHeader + "    ");
}
