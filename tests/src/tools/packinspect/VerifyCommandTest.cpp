#include "CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using testing::HasSubstr;
using testing::StartsWith;
using TestSupport::ReadBytes;
using TestSupport::WriteFile;
using Zar::ResourcesLibrary::ResourcesLibraryException;

TEST(VerifyCommandTest, VerifyNeedsExactlyOnePack)
{
    EXPECT_EQ(Inspect({ "verify" })._err, UsageText("packinspect verify", "the pack file is missing"));
    auto const two = Inspect({ "verify", "a", "b" });
    EXPECT_EQ(two._status, 2);
    EXPECT_EQ(two._err, UsageText("packinspect verify", "one pack file at a time"));
}

TEST(VerifyCommandTest, VerifyOfAMissingFileThrows)
{
    EXPECT_THAT(
        [] {
            Inspect({ "verify", "/nonexistent/oled.pack" });
        },
        testing::ThrowsMessage<ResourcesLibraryException>(
            testing::StrEq("Cannot open /nonexistent/oled.pack")));
}

TEST(VerifyCommandTest, VerifyPassesASoundPackAndFailsADamagedOne)
{
    auto bytes = BuildPack(WorkedExample());
    PackFolder const sound(bytes);
    auto const good = Inspect({ "verify", sound.Path() });
    EXPECT_EQ(good._status, 0);
    EXPECT_THAT(good._out, StartsWith(sound.Path() + "\nsector  file  stored  computed  result\n"));
    EXPECT_THAT(good._out, testing::EndsWith("verdict: OK, 4 sectors match their CRC\n"));

    bytes[5000] ^= 4;
    PackFolder const damaged(bytes);
    auto const bad = Inspect({ "verify", "--", damaged.Path() });
    EXPECT_EQ(bad._status, 1);
    EXPECT_THAT(bad._out, testing::EndsWith("verdict: BAD, 1 problem\n"));
}

TEST(EndToEndTest, VerifyPassesWhatPackagerWrote)
{
    ExampleRun const run;
    ASSERT_EQ(run.Packager().exitCode, 0) << run.Packager().output;
    auto const result = run.Inspect("verify oled.pack");
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, testing::EndsWith("verdict: OK, 8 sectors match their CRC\n"));
    // Every CRC packager printed is one the verifier found stored and recomputed.
    std::smatch crcLine;
    ASSERT_TRUE(std::regex_search(run.Packager().output, crcLine, std::regex("crc:([0-9A-F ]+)")));
    std::istringstream crcs(crcLine[1]);
    for (std::string crc; crcs >> crc;)
        EXPECT_THAT(result.output, HasSubstr(crc + "      " + crc + "  OK\n"));
}

TEST(EndToEndTest, VerifyFailsOnCorruptedCopies)
{
    ExampleRun const run;
    auto const good = ReadBytes(run.Pack());
    struct Damage {
        char const* _what;
        std::size_t _offset;
        char const* _expected;
    };
    // File sectors 1 and 2 hold icons, 3 to 8 screens; the header maps them to 12, 13 and 247 to 252.
    Damage const damages[] = { { "first icon sector", 1 * 4096 + 10, "    12     1" },
        { "icon padding", 2 * 4096 + 4000, "    13     2" },
        { "first screen sector", 3 * 4096, "   247     3" },
        { "last screen sector", 9 * 4096 - 1, "   252     8" },
        { "stored CRC", 24 + 2 * 249, "   249     5" } };
    for (auto const& damage : damages) {
        auto bytes = good;
        bytes[damage._offset] ^= 0x20;
        WriteFile(run.Folder() / "damaged.pack", bytes);
        auto const result = run.Inspect("verify damaged.pack");
        EXPECT_EQ(result.exitCode, 1) << damage._what;
        EXPECT_THAT(result.output,
            testing::ContainsRegex(std::string(damage._expected) + " +[0-9A-F]{4} +[0-9A-F]{4}  BAD"))
            << damage._what;
        EXPECT_THAT(result.output, testing::EndsWith("verdict: BAD, 1 problem\n")) << damage._what;
    }

    auto truncated = good;
    truncated.resize(good.size() - 5000);
    WriteFile(run.Folder() / "truncated.pack", truncated);
    auto const cut = run.Inspect("verify truncated.pack");
    EXPECT_EQ(cut.exitCode, 1);
    EXPECT_THAT(cut.output, HasSubstr("BAD (cut short: 3192 of 4096 bytes)"));
    EXPECT_THAT(cut.output, HasSubstr("BAD (missing from the file)"));

    auto wrongMagic = good;
    wrongMagic[2] = 'Q';
    WriteFile(run.Folder() / "magic.pack", wrongMagic);
    auto const magic = run.Inspect("verify magic.pack");
    EXPECT_EQ(magic.exitCode, 1);
    EXPECT_THAT(magic.output, HasSubstr("problem: wrong magic 0051415A"));
}

TEST(EndToEndTest, AFileThatCannotBeReadExitsWithTwo)
{
    ExampleRun const run;
    auto const result = run.Inspect("verify nothing.pack");
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "packinspect: Cannot open nothing.pack\n");
    EXPECT_EQ(run.Inspect("").exitCode, 2);
}
