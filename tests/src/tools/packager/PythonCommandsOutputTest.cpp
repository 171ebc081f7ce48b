#include "PythonCommandsOutput.h"

#include "GeneratedText.h"

#include "Zar/Lt/Core/StringCollection/StringCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utf8.h>

#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

using PackagerTests::Generate;
using PackagerTests::Lines;
using testing::ElementsAreArray;
using Zar::Lt::Core::StringCollection;
using Zar::ResourcesLibrary::Tools::EnumerationOption;
using Zar::ResourcesLibrary::Tools::PythonCommandsOutput;

namespace {

EnumerationOption const kIcons { "Icon", 100, true };

// Only the lines written for the names, without the fixed header and footer.
std::string Commands(std::initializer_list<std::string_view> names, bool capitalize = true)
{
    StringCollection collection;
    collection.Append(names);
    std::ostringstream stream;
    PythonCommandsOutput output(stream, { "Icon", 100, capitalize });
    output.Write(collection, 0);
    return stream.str();
}

std::string const kHeader
    = "import enum\n"
      "from software.remote.exception.command_not_found_exception import CommandNotFoundException\n"
      "@unique\n"
      "class Commands(enum.Enum):\n"
      "    MENU = 'Menu'\n"
      "    SHIFT = 'Shift'\n"
      "    S3 = 'S3'\n"
      "    S4 = 'S4'\n"
      "    S5 = 'S5'\n"
      "    S6 = 'S6'\n"
      "    S7 = 'S7'\n"
      "    S8 = 'S8'\n"
      "    CLEAR = 'Clear'\n"
      "    ENTER = 'Enter'\n"
      "    F1 = 'F1'\n"
      "    F2 = 'F2'\n"
      "    F3 = 'F3'\n"
      "    F4 = 'F4'\n"
      "    F5 = 'F5'\n"
      "    F6 = 'F6'\n"
      "    F7 = 'F7'\n"
      "    F8 = 'F8'\n"
      "    F9 = 'F9'\n"
      "    F10 = 'F10'\n";

std::string const kFooter = "\n"
                            "    @classmethod\n"
                            "    def from_name(cls, command):\n"
                            "        for property_name, member in Commands.__members__.items():\n"
                            "            if property_name == command.upper():\n"
                            "                return member\n"
                            "        raise CommandNotFoundException(command)\n";

} // namespace

TEST(PythonCommandsOutputTest, WorkedExampleLineByLine)
{
    std::string const text = Generate<PythonCommandsOutput>(kIcons, { "Play", "Stop_Selected" });
    std::vector<std::string> const expected {
        "import enum",
        "from software.remote.exception.command_not_found_exception import CommandNotFoundException",
        "@unique",
        "class Commands(enum.Enum):",
        "    MENU = 'Menu'",
        "    SHIFT = 'Shift'",
        "    S3 = 'S3'",
        "    S4 = 'S4'",
        "    S5 = 'S5'",
        "    S6 = 'S6'",
        "    S7 = 'S7'",
        "    S8 = 'S8'",
        "    CLEAR = 'Clear'",
        "    ENTER = 'Enter'",
        "    F1 = 'F1'",
        "    F2 = 'F2'",
        "    F3 = 'F3'",
        "    F4 = 'F4'",
        "    F5 = 'F5'",
        "    F6 = 'F6'",
        "    F7 = 'F7'",
        "    F8 = 'F8'",
        "    F9 = 'F9'",
        "    F10 = 'F10'",
        "    Play = 'Play'",
        "",
        "    @classmethod",
        "    def from_name(cls, command):",
        "        for property_name, member in Commands.__members__.items():",
        "            if property_name == command.upper():",
        "                return member",
        "        raise CommandNotFoundException(command)",
    };
    EXPECT_THAT(Lines(text), ElementsAreArray(expected));
    EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(PythonCommandsOutputTest, NoIconsGiveTheTwentyFixedMembersOnly)
{
    std::string const text = Generate<PythonCommandsOutput>(kIcons, {});
    EXPECT_EQ(text, kHeader + kFooter);
    EXPECT_EQ(Lines(text).size(), 4u + 20u + 7u);
}

TEST(PythonCommandsOutputTest, OptionNameAndFirstDoNotChangeTheText)
{
    std::string const text = Generate<PythonCommandsOutput>({ "Screen", -7, true }, { "Play" });
    EXPECT_EQ(text, Generate<PythonCommandsOutput>(kIcons, { "Play" }));
    EXPECT_EQ(text, kHeader + "    Play = 'Play'\n" + kFooter);
}

TEST(PythonCommandsOutputTest, CapitalisedEnumeratorButOriginalCaseValue)
{
    EXPECT_EQ(Commands({ "play_stop" }), "    Play_stop = 'play_stop'\n");
}

TEST(PythonCommandsOutputTest, WithoutCapitalisationTheEnumeratorIsTheTrimmedName)
{
    EXPECT_EQ(Commands({ "play_stop" }, false), "    play_stop = 'play_stop'\n");
}

TEST(PythonCommandsOutputTest, ExactlyEmptyIsSkipped) { EXPECT_EQ(Commands({ "empty" }), ""); }

TEST(PythonCommandsOutputTest, EmptyInAnotherCaseIsWritten)
{
    EXPECT_EQ(Commands({ "Empty", "EMPTY" }), "    Empty = 'Empty'\n    EMPTY = 'EMPTY'\n");
}

TEST(PythonCommandsOutputTest, EmptyWithBlanksIsNotSkipped)
{
    // The test is made on the name as received, so the blank keeps it from matching.
    EXPECT_EQ(Commands({ " empty" }), "    Empty = 'empty'\n");
}

TEST(PythonCommandsOutputTest, SelectedVariantsAreSkipped)
{
    EXPECT_EQ(Commands({ "Stop_Selected", "_Selected", "play_stop_Selected" }), "");
}

TEST(PythonCommandsOutputTest, SelectedTestIsCaseSensitive)
{
    EXPECT_EQ(Commands({ "x_selected", "y_SELECTED" }),
        "    X_selected = 'x_selected'\n    Y_SELECTED = 'y_SELECTED'\n");
}

TEST(PythonCommandsOutputTest, SelectedOnlyAfterTrimmingIsNotSkipped)
{
    EXPECT_EQ(Commands({ "Stop_Selected  ", "Play_Selected\r" }),
        "    Stop_Selected = 'Stop_Selected'\n    Play_Selected = 'Play_Selected'\n");
}

TEST(PythonCommandsOutputTest, SelectedInTheMiddleIsWritten)
{
    EXPECT_EQ(Commands({ "Stop_Selected_2" }), "    Stop_Selected_2 = 'Stop_Selected_2'\n");
}

TEST(PythonCommandsOutputTest, ValueIsTheTrimmedNameWithDashesReplaced)
{
    EXPECT_EQ(Commands({ " stop-play\r\n" }), "    Stop_play = 'stop_play'\n");
}

TEST(PythonCommandsOutputTest, QuotesAndBackslashesAreWrittenUnescaped)
{
    EXPECT_EQ(Commands({ "it's", "a\\b" }), "    It's = 'it's'\n    A\\b = 'a\\b'\n");
}

TEST(PythonCommandsOutputTest, IndexIsNotUsed)
{
    std::ostringstream stream;
    PythonCommandsOutput output(stream, kIcons);
    output.Write(0, "play");
    output.Write(12, "stop");
    EXPECT_EQ(stream.str(), "    Play = 'play'\n    Stop = 'stop'\n");
}

TEST(PythonCommandsOutputTest, SkippedNamesStillCountAsEnumerated)
{
    StringCollection collection;
    collection.Append({ "Play", "Play_Selected", "empty" });
    std::ostringstream stream;
    PythonCommandsOutput output(stream, kIcons);
    output.Write(collection, 0);
    EXPECT_EQ(output.Count(), 3);
}

TEST(PythonCommandsOutputTest, FooterIgnoresTheCount)
{
    for (int count : { 0, 3, -1 }) {
        std::ostringstream stream;
        PythonCommandsOutput output(stream, kIcons);
        output.WriteFooter(count);
        EXPECT_EQ(stream.str(), kFooter) << "count " << count;
    }
}

TEST(PythonCommandsOutputTest, InvalidUtf8LeavesTheTextWrittenBeforeIt)
{
    std::ostringstream stream;
    PythonCommandsOutput output(stream, kIcons);
    output.WriteHeader();
    EXPECT_THAT(
        [&] {
            output.Write(0,
                "pl\xff"
                "ay");
        },
        testing::ThrowsMessage<utf8::invalid_utf8>(testing::StrEq("Invalid UTF-8")));
    EXPECT_EQ(stream.str(), kHeader + "    ");
}

TEST(PythonCommandsOutputTest, InvalidUtf8SelectedVariantIsSkippedBeforeAnyConversion)
{
    // The Qt test replaces the bad byte and still finds the suffix, so nothing is converted.
    EXPECT_EQ(Commands({ "\xff_Selected" }), "");
}
