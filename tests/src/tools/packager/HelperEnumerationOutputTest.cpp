#include "HelperEnumerationOutput.h"

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
using Zar::ResourcesLibrary::Tools::HelperEnumerationOutput;

namespace {

std::string const kIconHeader = "#include \"IconHelper.h\"\n"
                                "using namespace Zar::RemoteController::Features;\n"
                                "\n"
                                "//same order as Icon enumeration\n"
                                "const char* IconsHelper::GetString(uint32_t value)\n"
                                "{\n"
                                "    static const char* names[] = {\n";

std::string const kFooter = "    };\n    return names[value];\n}\n";

} // namespace

TEST(HelperEnumerationOutputTest, IconsWorkedExampleLineByLine)
{
    std::string const text
        = Generate<HelperEnumerationOutput>({ "Icon", 100, true }, { "Play", "Stop_Selected" });
    std::vector<std::string> const expected {
        "#include \"IconHelper.h\"",
        "using namespace Zar::RemoteController::Features;",
        "",
        "//same order as Icon enumeration",
        "const char* IconsHelper::GetString(uint32_t value)",
        "{",
        "    static const char* names[] = {",
        "        \"Play\",",
        "        \"Stop_Selected\",",
        "    };",
        "    return names[value];",
        "}",
    };
    EXPECT_THAT(Lines(text), ElementsAreArray(expected));
    EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(HelperEnumerationOutputTest, IncludedHeaderIsSingularWhileTheClassIsPlural)
{
    std::string const text = Generate<HelperEnumerationOutput>({ "Screen", 0, true }, {});
    EXPECT_EQ(text,
        "#include \"ScreenHelper.h\"\nusing namespace Zar::RemoteController::Features;\n\n"
        "//same order as Screen enumeration\nconst char* ScreensHelper::GetString(uint32_t value)\n{\n"
        "    static const char* names[] = {\n"
            + kFooter);
}

TEST(HelperEnumerationOutputTest, FirstValueDoesNotChangeTheTable)
{
    std::string const fromHundred
        = Generate<HelperEnumerationOutput>({ "Icon", 100, true }, { "Play", "Stop" });
    EXPECT_EQ(fromHundred, Generate<HelperEnumerationOutput>({ "Icon", 0, true }, { "Play", "Stop" }));
    EXPECT_EQ(fromHundred, Generate<HelperEnumerationOutput>({ "Icon", -20, true }, { "Play", "Stop" }));
    EXPECT_EQ(fromHundred, kIconHeader + "        \"Play\",\n        \"Stop\",\n" + kFooter);
}

TEST(HelperEnumerationOutputTest, ReturnsTheTableEntryWithoutARangeCheck)
{
    std::ostringstream stream;
    HelperEnumerationOutput output(stream, { "Icon", 100, true });
    output.WriteFooter(2);
    EXPECT_EQ(stream.str(), "    };\n    return names[value];\n}\n");
}

TEST(HelperEnumerationOutputTest, FooterIgnoresTheCount)
{
    for (int count : { 0, 7, -1 }) {
        std::ostringstream stream;
        HelperEnumerationOutput output(stream, { "Icon", 100, true });
        output.WriteFooter(count);
        EXPECT_EQ(stream.str(), kFooter) << "count " << count;
    }
}

TEST(HelperEnumerationOutputTest, IndexIsNotWritten)
{
    std::ostringstream stream;
    HelperEnumerationOutput output(stream, { "Icon", 100, true });
    output.Write(0, "Play");
    output.Write(41, "Stop");
    EXPECT_EQ(stream.str(), "        \"Play\",\n        \"Stop\",\n");
}

TEST(HelperEnumerationOutputTest, QuotesAndBackslashesAreWrittenUnescaped)
{
    EXPECT_EQ(Generate<HelperEnumerationOutput>({ "Icon", 100, true }, { "say \"hi\"", "back\\slash" }),
        kIconHeader + "        \"Say \"hi\"\",\n        \"Back\\slash\",\n" + kFooter);
}

TEST(HelperEnumerationOutputTest, NamesAreTrimmedAndDashesReplaced)
{
    EXPECT_EQ(Generate<HelperEnumerationOutput>({ "Icon", 100, true }, { " Play\r", "Stop-Play" }),
        kIconHeader + "        \"Play\",\n        \"Stop_Play\",\n" + kFooter);
}

TEST(HelperEnumerationOutputTest, NamesStayAsTheyAreWithoutCapitalisation)
{
    EXPECT_EQ(Generate<HelperEnumerationOutput>({ "Icon", 100, false }, { "play_stop" }),
        kIconHeader + "        \"play_stop\",\n" + kFooter);
}

TEST(HelperEnumerationOutputTest, OffsetSkipsEarlierNames)
{
    EXPECT_EQ(Generate<HelperEnumerationOutput>({ "Icon", 100, true }, { "one", "two", "three" }, 2),
        kIconHeader + "        \"Three\",\n" + kFooter);
}

TEST(HelperEnumerationOutputTest, InvalidUtf8LeavesTheTextWrittenBeforeIt)
{
    std::ostringstream stream;
    HelperEnumerationOutput output(stream, { "Icon", 100, true });
    output.WriteHeader();
    EXPECT_THAT([&] { output.Write(0, "Pl\xff"); },
        testing::ThrowsMessage<utf8::invalid_utf8>(testing::StrEq("Invalid UTF-8")));
    EXPECT_EQ(stream.str(), kIconHeader + "        \"");
}
