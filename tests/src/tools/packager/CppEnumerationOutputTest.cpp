#include "CppEnumerationOutput.h"

#include "GeneratedText.h"

#include "Zar/Lt/Core/StringCollection/StringCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utf8.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

using PackagerTests::Generate;
using PackagerTests::Lines;
using testing::ElementsAreArray;
using Zar::Lt::Core::StringCollection;
using Zar::ResourcesLibrary::Tools::CppEnumerationOutput;
using Zar::ResourcesLibrary::Tools::EnumerationOption;

namespace {

std::string const kIconHeader = "#pragma once\n"
                                "#include <stdint.h>\n"
                                "\n"
                                "namespace Zar { namespace RemoteController { namespace Features {\n"
                                "    using IconIndex = uint16_t;\n"
                                "}}}\n"
                                "\n"
                                "namespace Zar { namespace RemoteButtonsConfiguration {\n"
                                "\n"
                                "    using Zar::RemoteController::Features::IconIndex;\n"
                                "\n"
                                "enum class Icon : IconIndex\n"
                                "{\n";

// The part of the footer after First and Count, the same for every icon file.
std::string const kIconOperators = "};\n"
                                   "\n"
                                   "inline bool operator==(IconIndex left, Icon right)\n"
                                   "{\n"
                                   "    return left == static_cast<IconIndex>(right);\n"
                                   "}\n"
                                   "\n"
                                   "inline bool operator==(Icon left, IconIndex right)\n"
                                   "{\n"
                                   "    return static_cast<IconIndex>(left) == right;\n"
                                   "}\n"
                                   "}}\n";

} // namespace

TEST(CppEnumerationOutputTest, IconsWorkedExampleLineByLine)
{
    std::string const text
        = Generate<CppEnumerationOutput>({ "Icon", 100, true }, { "Play", "Stop_Selected" });
    std::vector<std::string> const expected {
        "#pragma once",
        "#include <stdint.h>",
        "",
        "namespace Zar { namespace RemoteController { namespace Features {",
        "    using IconIndex = uint16_t;",
        "}}}",
        "",
        "namespace Zar { namespace RemoteButtonsConfiguration {",
        "",
        "    using Zar::RemoteController::Features::IconIndex;",
        "",
        "enum class Icon : IconIndex",
        "{",
        "    Play = 100,",
        "    Stop_Selected,",
        "};",
        "",
        "struct Icons",
        "{",
        "    static constexpr IconIndex Last = static_cast<IconIndex>(101);",
        "    static constexpr IconIndex First = static_cast<IconIndex>(100);",
        "    static constexpr IconIndex Count = 2;",
        "};",
        "",
        "inline bool operator==(IconIndex left, Icon right)",
        "{",
        "    return left == static_cast<IconIndex>(right);",
        "}",
        "",
        "inline bool operator==(Icon left, IconIndex right)",
        "{",
        "    return static_cast<IconIndex>(left) == right;",
        "}",
        "}}",
    };
    EXPECT_THAT(Lines(text), ElementsAreArray(expected));
    EXPECT_EQ(text.back(), '\n');
    EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(CppEnumerationOutputTest, ScreensWithFirstZeroHaveNoExplicitValue)
{
    std::string const text
        = Generate<CppEnumerationOutput>({ "Screen", 0, true }, { "Play", "Stop_Selected" });
    EXPECT_EQ(text,
        "#pragma once\n#include <stdint.h>\n\nnamespace Zar { namespace RemoteController { namespace "
        "Features {\n"
        "    using ScreenIndex = uint16_t;\n}}}\n\nnamespace Zar { namespace RemoteButtonsConfiguration {\n\n"
        "    using Zar::RemoteController::Features::ScreenIndex;\n\nenum class Screen : ScreenIndex\n{\n"
        "    Play,\n"
        "    Stop_Selected,\n"
        "};\n\nstruct Screens\n{\n"
        "    static constexpr ScreenIndex Last = static_cast<ScreenIndex>(1);\n"
        "    static constexpr ScreenIndex First = static_cast<ScreenIndex>(0);\n"
        "    static constexpr ScreenIndex Count = 2;\n"
        "};\n\ninline bool operator==(ScreenIndex left, Screen right)\n{\n"
        "    return left == static_cast<ScreenIndex>(right);\n}\n\n"
        "inline bool operator==(Screen left, ScreenIndex right)\n{\n"
        "    return static_cast<ScreenIndex>(left) == right;\n}\n}}\n");
}

TEST(CppEnumerationOutputTest, NoNamesGiveAnEmptyBodyAndNoLast)
{
    std::string const text = Generate<CppEnumerationOutput>({ "Icon", 100, true }, {});
    EXPECT_EQ(text,
        kIconHeader
            + "};\n\nstruct Icons\n{\n"
              "    static constexpr IconIndex First = static_cast<IconIndex>(100);\n"
              "    static constexpr IconIndex Count = 0;\n"
            + kIconOperators);
    EXPECT_NE(text.find("{\n};"), std::string::npos);
    EXPECT_EQ(text.find("Last"), std::string::npos);
}

TEST(CppEnumerationOutputTest, FirstZeroGivesNoEnumeratorAValue)
{
    std::string const text = Generate<CppEnumerationOutput>({ "Icon", 0, true }, { "a", "b", "c" });
    EXPECT_EQ(text,
        kIconHeader
            + "    A,\n    B,\n    C,\n};\n\nstruct Icons\n{\n"
              "    static constexpr IconIndex Last = static_cast<IconIndex>(2);\n"
              "    static constexpr IconIndex First = static_cast<IconIndex>(0);\n"
              "    static constexpr IconIndex Count = 3;\n"
            + kIconOperators);
}

TEST(CppEnumerationOutputTest, FirstTenComesFromSectorThree)
{
    std::string const text = Generate<CppEnumerationOutput>({ "Icon", 10, true }, { "a", "b", "c" });
    EXPECT_EQ(text,
        kIconHeader
            + "    A = 10,\n    B,\n    C,\n};\n\nstruct Icons\n{\n"
              "    static constexpr IconIndex Last = static_cast<IconIndex>(12);\n"
              "    static constexpr IconIndex First = static_cast<IconIndex>(10);\n"
              "    static constexpr IconIndex Count = 3;\n"
            + kIconOperators);
}

TEST(CppEnumerationOutputTest, NegativeFirstPrintsSignedButLastUnsigned)
{
    EXPECT_EQ(Generate<CppEnumerationOutput>({ "Icon", -10, true }, { "Play", "Stop" }),
        kIconHeader
            + "    Play = -10,\n    Stop,\n};\n\nstruct Icons\n{\n"
              "    static constexpr IconIndex Last = static_cast<IconIndex>(4294967287);\n"
              "    static constexpr IconIndex First = static_cast<IconIndex>(-10);\n"
              "    static constexpr IconIndex Count = 2;\n"
            + kIconOperators);
    EXPECT_EQ(Generate<CppEnumerationOutput>({ "Icon", -20, true }, { "Play" }),
        kIconHeader
            + "    Play = -20,\n};\n\nstruct Icons\n{\n"
              "    static constexpr IconIndex Last = static_cast<IconIndex>(4294967276);\n"
              "    static constexpr IconIndex First = static_cast<IconIndex>(-20);\n"
              "    static constexpr IconIndex Count = 1;\n"
            + kIconOperators);
}

TEST(CppEnumerationOutputTest, LastWrapsInsteadOfOverflowing)
{
    std::string const text = Generate<CppEnumerationOutput>({ "Icon", INT32_MAX, true }, { "a", "b" });
    EXPECT_NE(text.find("    A = 2147483647,\n"), std::string::npos);
    EXPECT_NE(text.find("Last = static_cast<IconIndex>(2147483648);\n"), std::string::npos);
}

TEST(CppEnumerationOutputTest, NamesAreTrimmedAndDashesReplaced)
{
    std::string const text
        = Generate<CppEnumerationOutput>({ "Icon", 100, true }, { " Play\r", "Stop-Play", "\tpause \n" });
    EXPECT_EQ(text,
        kIconHeader
            + "    Play = 100,\n    Stop_Play,\n    Pause,\n};\n\nstruct Icons\n{\n"
              "    static constexpr IconIndex Last = static_cast<IconIndex>(102);\n"
              "    static constexpr IconIndex First = static_cast<IconIndex>(100);\n"
              "    static constexpr IconIndex Count = 3;\n"
            + kIconOperators);
}

TEST(CppEnumerationOutputTest, NamesStayAsTheyAreWithoutCapitalisation)
{
    std::string const text = Generate<CppEnumerationOutput>({ "Icon", 0, false }, { " play_stop ", "x-y" });
    EXPECT_NE(text.find("{\n    play_stop,\n    x_y,\n};\n"), std::string::npos);
}

TEST(CppEnumerationOutputTest, OffsetNumbersTheFirstWrittenNameFromZero)
{
    std::string const text
        = Generate<CppEnumerationOutput>({ "Icon", 100, true }, { "one", "two", "three" }, 1);
    EXPECT_NE(text.find("{\n    Two = 100,\n    Three,\n};\n"), std::string::npos);
    EXPECT_NE(text.find("Last = static_cast<IconIndex>(101);\n"), std::string::npos);
    EXPECT_NE(text.find("Count = 2;\n"), std::string::npos);
}

TEST(CppEnumerationOutputTest, ValueGoesOnIndexZeroOnly)
{
    std::ostringstream stream;
    CppEnumerationOutput output(stream, { "Icon", 100, true });
    output.Write(3, "Play");
    output.Write(0, "Stop");
    EXPECT_EQ(stream.str(), "    Play,\n    Stop = 100,\n");
}

TEST(CppEnumerationOutputTest, FooterUsesTheCountItIsGiven)
{
    std::ostringstream stream;
    CppEnumerationOutput output(stream, { "Icon", 100, true });
    output.WriteFooter(5);
    EXPECT_EQ(stream.str(),
        "};\n\nstruct Icons\n{\n"
        "    static constexpr IconIndex Last = static_cast<IconIndex>(104);\n"
        "    static constexpr IconIndex First = static_cast<IconIndex>(100);\n"
        "    static constexpr IconIndex Count = 5;\n"
            + kIconOperators);
}

TEST(CppEnumerationOutputTest, InvalidUtf8LeavesTheTextWrittenBeforeIt)
{
    std::ostringstream stream;
    CppEnumerationOutput output(stream, { "Icon", 100, true });
    output.WriteHeader();
    output.Write(0, "Play");
    EXPECT_THAT([&] { output.Write(1, "St\xffop"); },
        testing::ThrowsMessage<utf8::invalid_utf8>(testing::StrEq("Invalid UTF-8")));
    EXPECT_EQ(stream.str(), kIconHeader + "    Play = 100,\n    ");
}

TEST(CppEnumerationOutputTest, InvalidUtf8StopsTheEnumerationWithoutCountingTheName)
{
    StringCollection names;
    names.Append({ "Play", "\xc3", "Stop" });
    std::ostringstream stream;
    CppEnumerationOutput output(stream, { "Icon", 100, true });
    EXPECT_THAT([&] { output.Write(names, 0); },
        testing::ThrowsMessage<utf8::not_enough_room>(testing::StrEq("Not enough space")));
    EXPECT_EQ(stream.str(), "    Play = 100,\n    ");
    EXPECT_EQ(output.Count(), 1);
}
