#include "EnumerationOutput.h"

#include "Zar/Lt/Core/StringCollection/StringCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utf8.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

using Zar::Lt::Core::StringCollection;
using Zar::ResourcesLibrary::Tools::EnumerationOption;
using Zar::ResourcesLibrary::Tools::EnumerationOutput;

namespace {

// Records what the enumeration loop hands to the writer, and opens the shared name handling.
class RecordingOutput : public EnumerationOutput {
public:
    using EnumerationOutput::EnumerationOutput;
    using EnumerationOutput::Write;

    void WriteHeader() override { _stream << "header;"; }
    void WriteFooter(int count) override { _stream << "footer " << count << ";"; }
    void Write(int index, std::string_view const& name) override
    {
        written.emplace_back(index, std::string(name));
        countsSeen.push_back(Count());
    }

    static std::string Clean(std::string_view name) { return CleanName(name); }
    std::string Enumerator(std::string_view cleanName) const { return EnumeratorName(cleanName); }
    std::string const& Name() const { return _name; }
    int32_t First() const { return _first; }
    bool Capitalize() const { return _capitalize; }

    std::vector<std::pair<int, std::string>> written;
    std::vector<int> countsSeen;
};

using Written = std::vector<std::pair<int, std::string>>;

StringCollection FiveNames()
{
    StringCollection names;
    names.Append({ "Zero", "One", "Two", "Three", "Four" });
    return names;
}

} // namespace

TEST(EnumerationOutputTest, CopiesTheOptionAndStartsWithNoEnumerator)
{
    std::ostringstream stream;
    EnumerationOption const option { "Icon", -20, true };
    RecordingOutput const output(stream, option);
    EXPECT_EQ(output.Name(), "Icon");
    EXPECT_EQ(output.First(), -20);
    EXPECT_TRUE(output.Capitalize());
    EXPECT_EQ(output.Count(), 0);
    EXPECT_EQ(stream.str(), "");
}

TEST(EnumerationOutputTest, OffsetZeroDeliversEveryNameNumberedFromZero)
{
    std::ostringstream stream;
    RecordingOutput output(stream, { "Icon", 100, true });
    output.Write(FiveNames(), 0);
    EXPECT_EQ(output.written,
        (Written { { 0, "Zero" }, { 1, "One" }, { 2, "Two" }, { 3, "Three" }, { 4, "Four" } }));
    EXPECT_EQ(output.Count(), 5);
}

TEST(EnumerationOutputTest, CountIsIncrementedAfterEachWrite)
{
    std::ostringstream stream;
    RecordingOutput output(stream, { "Icon", 0, false });
    output.Write(FiveNames(), 0);
    EXPECT_EQ(output.countsSeen, (std::vector<int> { 0, 1, 2, 3, 4 }));
}

TEST(EnumerationOutputTest, NonZeroOffsetSkipsEarlierNamesAndNumbersFromZero)
{
    std::ostringstream stream;
    RecordingOutput output(stream, { "Screen", 0, true });
    output.Write(FiveNames(), 2);
    EXPECT_EQ(output.written, (Written { { 0, "Two" }, { 1, "Three" }, { 2, "Four" } }));
    EXPECT_EQ(output.Count(), 3);
}

TEST(EnumerationOutputTest, OffsetAtOrPastTheEndDeliversNothing)
{
    for (int offset : { 5, 6 }) {
        std::ostringstream stream;
        RecordingOutput output(stream, { "Screen", 0, true });
        output.Write(FiveNames(), offset);
        EXPECT_TRUE(output.written.empty()) << "offset " << offset;
        EXPECT_EQ(output.Count(), 0) << "offset " << offset;
    }
}

TEST(EnumerationOutputTest, EmptyCollectionDeliversNothing)
{
    std::ostringstream stream;
    RecordingOutput output(stream, { "Icon", 100, true });
    output.Write(StringCollection(), 0);
    EXPECT_TRUE(output.written.empty());
    EXPECT_EQ(output.Count(), 0);
}

TEST(EnumerationOutputTest, SecondCallKeepsCounting)
{
    std::ostringstream stream;
    RecordingOutput output(stream, { "Icon", 100, true });
    output.Write(FiveNames(), 3);
    output.Write(FiveNames(), 4);
    EXPECT_EQ(output.written, (Written { { 0, "Three" }, { 1, "Four" }, { 0, "Four" } }));
    EXPECT_EQ(output.Count(), 3);
}

TEST(EnumerationOutputTest, CallsThroughTheBaseInterface)
{
    std::ostringstream stream;
    RecordingOutput recorder(stream, { "Icon", 100, true });
    EnumerationOutput& output = recorder;
    output.WriteHeader();
    output.Write(FiveNames(), 4);
    output.WriteFooter(output.Count());
    EXPECT_EQ(stream.str(), "header;footer 1;");
    EXPECT_EQ(recorder.written, (Written { { 0, "Four" } }));
}

TEST(EnumerationOutputTest, CleanNameTrimsBlanksAndLineEnds)
{
    EXPECT_EQ(RecordingOutput::Clean(" Play\r"), "Play");
    EXPECT_EQ(RecordingOutput::Clean("\t\n Play \t\r\n"), "Play");
    EXPECT_EQ(RecordingOutput::Clean("Play"), "Play");
}

TEST(EnumerationOutputTest, CleanNameKeepsInnerBlanks)
{
    EXPECT_EQ(RecordingOutput::Clean("  multi word\t"), "multi word");
}

TEST(EnumerationOutputTest, CleanNameTrimsNoOtherCharacters)
{
    EXPECT_EQ(RecordingOutput::Clean("\vPlay\f"), "\vPlay\f");
}

TEST(EnumerationOutputTest, CleanNameOfOnlyBlanksIsEmpty)
{
    EXPECT_EQ(RecordingOutput::Clean(" \t\r\n"), "");
    EXPECT_EQ(RecordingOutput::Clean(""), "");
}

TEST(EnumerationOutputTest, CleanNameReplacesEveryDashByUnderscore)
{
    EXPECT_EQ(RecordingOutput::Clean("Stop-Play"), "Stop_Play");
    EXPECT_EQ(RecordingOutput::Clean(" -a--b- "), "_a__b_");
}

TEST(EnumerationOutputTest, EnumeratorNameCapitalisesWhenAsked)
{
    std::ostringstream stream;
    RecordingOutput const output(stream, { "Icon", 0, true });
    EXPECT_EQ(output.Enumerator("stop_selected"), "Stop_selected");
    EXPECT_EQ(output.Enumerator("multi word"), "Multi Word");
    EXPECT_EQ(output.Enumerator("PLAY"), "PLAY");
    EXPECT_EQ(output.Enumerator(""), "");
}

TEST(EnumerationOutputTest, EnumeratorNameIsUnchangedWithoutCapitalisation)
{
    std::ostringstream stream;
    RecordingOutput const output(stream, { "Icon", 0, false });
    EXPECT_EQ(output.Enumerator("stop_selected"), "stop_selected");
}

TEST(EnumerationOutputTest, EnumeratorNameRefusesInvalidUtf8WhenCapitalising)
{
    std::ostringstream stream;
    RecordingOutput const output(stream, { "Icon", 0, true });
    EXPECT_THAT(
        [&] {
            output.Enumerator("pl\xff"
                              "ay");
        },
        testing::ThrowsMessage<utf8::invalid_utf8>(testing::StrEq("Invalid UTF-8")));
    EXPECT_THAT([&] { output.Enumerator("play\xc3"); },
        testing::ThrowsMessage<utf8::not_enough_room>(testing::StrEq("Not enough space")));
}

TEST(EnumerationOutputTest, EnumeratorNamePassesInvalidUtf8WithoutCapitalisation)
{
    std::ostringstream stream;
    RecordingOutput const output(stream, { "Icon", 0, false });
    EXPECT_EQ(output.Enumerator("pl\xff"), "pl\xff");
}
