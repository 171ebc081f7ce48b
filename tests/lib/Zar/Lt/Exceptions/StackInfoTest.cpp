#include "Zar/Lt/Exceptions/StackInfo.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include "StackProbe.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

// The probes below have external linkage and are never inlined, so that each one is a frame of its
// own with an exported name in the captured stack (the tests are linked with -rdynamic). Work done
// after each nested call keeps the compiler from turning it into a tail call that replaces a frame.
namespace Zar::Lt::Exceptions::StackProbe {

volatile int sink = 0;

// The probes fill an out parameter: a function returning std::string gets an ABI tag in its
// signature, which would hide its plain name.
ZAR_STACK_PROBE void CaptureAtDepth(int depth, std::vector<std::string>& frames)
{
    if (depth == 0)
        frames = StackInfo::Current(1, nullptr);
    else
        CaptureAtDepth(depth - 1, frames);
    sink = sink + 1;
}

ZAR_STACK_PROBE void CaptureHere(int skip, std::vector<std::string>& frames)
{
    frames = StackInfo::Current(skip, nullptr);
    sink = sink + 1;
}

ZAR_STACK_PROBE void Marker() { sink = sink + 1; }

ZAR_STACK_PROBE void CaptureWithAddress(void* address, std::vector<std::string>& frames)
{
    frames = StackInfo::Current(1, address);
    sink = sink + 1;
}

ZAR_STACK_PROBE Symbol Inner(bool asString)
{
    Symbol caller = asString ? StackInfo::Callee(std::string("Inner")) : StackInfo::Callee("Inner");
    sink = sink + 1;
    return caller;
}

ZAR_STACK_PROBE Symbol Outer(bool asString)
{
    Symbol caller = Inner(asString);
    sink = sink + 1;
    return caller;
}

// Climb(n) stacks n + 1 frames above Bottom and asks there for the caller of Bottom.
ZAR_STACK_PROBE Symbol Climb(int remaining)
{
    if (remaining == 0)
        return StackInfo::Callee("Bottom");
    Symbol caller = Climb(remaining - 1);
    sink = sink + 1;
    return caller;
}

ZAR_STACK_PROBE Symbol Bottom(int climbs)
{
    Symbol caller = Climb(climbs);
    sink = sink + 1;
    return caller;
}

ZAR_STACK_PROBE Symbol Ground(int climbs)
{
    Symbol caller = Bottom(climbs);
    sink = sink + 1;
    return caller;
}

} // namespace Zar::Lt::Exceptions::StackProbe

namespace Zar::Lt::Exceptions {
namespace {

using namespace StackProbe;

std::string const TestProgram = "lt_exceptions_tests";

std::vector<std::string> CaptureHere(int skip)
{
    std::vector<std::string> frames;
    StackProbe::CaptureHere(skip, frames);
    return frames;
}

std::vector<std::string> CaptureAtDepth(int depth)
{
    std::vector<std::string> frames;
    StackProbe::CaptureAtDepth(depth, frames);
    return frames;
}

std::vector<std::string> const CrcFrames = {
    "/lib/libc.so.6(+0x10) [0x7f0000000010]",
    "./packager(main+0x1c) [0x8a4]",
    "./packager(_ZN3Zar2Lt4Core5Crc165ResetEv+0x4) [0x900]",
    "./packager(_ZN3Zar2Lt4Core5Crc164NextEh+0x2a) [0x9a0]",
    "./packager(_ZN3Zar2Lt4Core9Crc16Test4BodyEv+0x8) [0xa00]",
};

TEST(StackInfoTest, DefaultSkipIsZero) { EXPECT_EQ(0, StackInfo::DefaultSkip); }

TEST(StackInfoTest, GetSplitsAtLineFeedsKeepingEmptyLines)
{
    EXPECT_EQ((std::vector<std::string> { "a", "", "b" }), StackInfo::Get("a\n\nb\n"));
    EXPECT_EQ((std::vector<std::string> { "a", "b" }), StackInfo::Get("a\nb"));
    EXPECT_EQ((std::vector<std::string> { "" }), StackInfo::Get("\n"));
    EXPECT_TRUE(StackInfo::Get("").empty());
}

TEST(StackInfoTest, CurrentWithoutSkipStartsWithItsOwnFrame)
{
    auto const frames = CaptureHere(0);
    ASSERT_GE(frames.size(), 3u);
    EXPECT_EQ(
        "Zar::Lt::Exceptions::StackInfo::Current[abi:cxx11](int, void*)", Symbol(frames[0]).Signature());
    EXPECT_EQ("CaptureHere", Symbol(frames[1]).Name());
    EXPECT_EQ(TestProgram, Symbol(frames[1]).LibraryName());
}

TEST(StackInfoTest, CurrentSkipsTheGivenNumberOfFrames)
{
    auto const frames = CaptureHere(1);
    ASSERT_FALSE(frames.empty());
    Symbol const first(frames[0]);
    EXPECT_EQ("CaptureHere", first.Name());
    EXPECT_EQ("StackProbe", first.Class());
    EXPECT_EQ("Zar::Lt::Exceptions", first.Namespace());
    EXPECT_EQ(
        "int, std::vector<std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >, "
        "std::allocator<std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> > > >&",
        first.Parameters());
    EXPECT_GT(first.Offset(), 0);
    EXPECT_NE(0u, first.Address());
}

TEST(StackInfoTest, CurrentWithTooLargeOrNegativeSkipIsEmpty)
{
    EXPECT_TRUE(CaptureHere(StackInfo::kMaxFrames).empty());
    EXPECT_TRUE(CaptureHere(-1).empty());
}

TEST(StackInfoTest, CurrentPutsTheGivenAddressInPlaceOfTheCallersFrame)
{
    void* const address = reinterpret_cast<void*>(&Marker);
    std::vector<std::string> frames;
    CaptureWithAddress(address, frames);
    ASSERT_FALSE(frames.empty());
    Symbol const first(frames[0]);
    EXPECT_EQ("Marker", first.Name());
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(address), first.Address());
    for (auto const& frame : frames)
        EXPECT_NE("CaptureWithAddress", Symbol(frame).Name());
}

TEST(StackInfoTest, DeepChainIsCutToThirtyFramesLessTheSkippedOne)
{
    auto const frames = CaptureAtDepth(40);
    ASSERT_EQ(29u, frames.size());
    for (auto const& frame : frames)
        EXPECT_EQ("CaptureAtDepth", Symbol(frame).Name()) << frame;
}

TEST(StackInfoTest, ShallowChainKeepsEveryFrame)
{
    auto const shallow = CaptureAtDepth(0);
    auto const deeper = CaptureAtDepth(3);
    EXPECT_LT(shallow.size(), 29u);
    EXPECT_EQ(shallow.size() + 3, deeper.size());
}

TEST(StackInfoTest, SymbolsFillsOneSymbolPerLineFromSkip)
{
    auto const symbols = StackInfo::Symbols(CrcFrames, 1);
    ASSERT_EQ(4u, symbols.size());
    EXPECT_EQ("main", symbols[0].Name());
    EXPECT_EQ("Reset", symbols[1].Name());
    EXPECT_EQ("Next", symbols[2].Name());
    EXPECT_EQ("Crc16Test", symbols[3].Class());
    EXPECT_EQ(symbols.size(), symbols.capacity());
    EXPECT_EQ(CrcFrames[1].data() + 11, symbols[0].Mangled().data());
}

TEST(StackInfoTest, SymbolsWithSkipAtTheEndIsEmpty)
{
    EXPECT_TRUE(StackInfo::Symbols(CrcFrames, static_cast<int>(CrcFrames.size())).empty());
    EXPECT_TRUE(StackInfo::Symbols({}, 0).empty());
}

TEST(StackInfoTest, SymbolsWithSkipBeyondTheEndFailsToReserve)
{
    try {
        StackInfo::Symbols(CrcFrames, static_cast<int>(CrcFrames.size()) + 1);
        FAIL() << "no exception";
    } catch (std::length_error const& e) {
        EXPECT_STREQ("vector::reserve", e.what());
    }
}

TEST(StackInfoTest, SymbolsWithNegativeSkipIsAPreCondition)
{
    try {
        StackInfo::Symbols(CrcFrames, -1);
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ("PreCondition skip >= 0", e.what());
    }
}

TEST(StackInfoTest, CalleeOfANameIsThePositionAfterIt)
{
    EXPECT_EQ(4, StackInfo::Callee("Next", CrcFrames));
    EXPECT_EQ(2, StackInfo::Callee("main", CrcFrames));
}

TEST(StackInfoTest, CalleeMatchesTheQualifiedNameToo)
{
    EXPECT_EQ(4, StackInfo::Callee("Zar::Lt::Core::Crc16::Next", CrcFrames));
    EXPECT_EQ(-1, StackInfo::Callee("Crc16::Next", CrcFrames));
}

TEST(StackInfoTest, CalleeOfAnUnknownNameOrEmptyListIsMinusOne)
{
    EXPECT_EQ(-1, StackInfo::Callee("Previous", CrcFrames));
    EXPECT_EQ(-1, StackInfo::Callee("Next", {}));
}

TEST(StackInfoTest, EmptyNameMatchesAFrameWithoutSymbol) { EXPECT_EQ(1, StackInfo::Callee("", CrcFrames)); }

TEST(StackInfoTest, CalleeFindsTheCallerInTheLiveStack)
{
    Symbol const caller = Outer(false);
    EXPECT_EQ("Outer", caller.Name());
    EXPECT_EQ("StackProbe", caller.Class());
    EXPECT_EQ("bool", caller.Parameters());
    EXPECT_EQ(TestProgram, caller.LibraryName());
    EXPECT_NE(0u, caller.Address());
}

TEST(StackInfoTest, CalleeOfAStringFindsTheSameCaller)
{
    Symbol const caller = Outer(true);
    EXPECT_EQ("Outer", caller.Name());
    EXPECT_EQ(TestProgram, caller.LibraryName());
}

TEST(StackInfoTest, CalleeResultOutlivesTheCapturedStack)
{
    Symbol const caller = Outer(false);
    std::vector<std::string> const overwrite(64, std::string(300, '#'));
    EXPECT_EQ(TestProgram, caller.LibraryName());
    EXPECT_NE(std::string_view::npos, caller.LibraryFullPath().find(TestProgram));
    EXPECT_EQ("_ZN3Zar2Lt10Exceptions10StackProbe5OuterEb", caller.Mangled());
}

TEST(StackInfoTest, CalleeOfAnAbsentFunctionIsAnEmptySymbol)
{
    Symbol const caller = StackInfo::Callee("NoSuchFunctionAnywhere");
    EXPECT_TRUE(caller.Signature().empty());
    EXPECT_TRUE(caller.LibraryName().empty());
    EXPECT_EQ(0u, caller.Address());
}

TEST(StackInfoTest, CalleeOfNullIsTheCalleeOfAnEmptyName)
{
    Symbol const ofNull = StackInfo::Callee(static_cast<char const*>(nullptr));
    Symbol const ofEmpty = StackInfo::Callee(std::string());
    // The test body has no exported name, so the match is found and its caller is described.
    EXPECT_FALSE(ofNull.LibraryName().empty());
    EXPECT_EQ(ofEmpty.Signature(), ofNull.Signature());
    EXPECT_EQ(ofEmpty.LibraryFullPath(), ofNull.LibraryFullPath());
    EXPECT_EQ(ofEmpty.Address(), ofNull.Address());
}

// In the stack that Callee captures, Callee itself is line 0, the Climb frames follow and Bottom
// stands at position climbs + 2 of the 29 lines (positions 0 to 28).
TEST(StackInfoTest, CalleeOfTheFrameBeforeTheLastIsTheLastFrame)
{
    Symbol const caller = Ground(25);
    EXPECT_EQ("Ground", caller.Name());
}

TEST(StackInfoTest, CalleeOfTheLastCapturedFrameIsAnEmptySymbol)
{
    Symbol const caller = Ground(26);
    EXPECT_TRUE(caller.Signature().empty());
    EXPECT_TRUE(caller.Name().empty());
    EXPECT_TRUE(caller.LibraryName().empty());
    EXPECT_EQ(0u, caller.Address());
}

TEST(StackInfoTest, CalleeOfAFrameBeyondTheCaptureIsAnEmptySymbol)
{
    Symbol const caller = Ground(27);
    EXPECT_TRUE(caller.Signature().empty());
    EXPECT_EQ(0u, caller.Address());
}

} // namespace
} // namespace Zar::Lt::Exceptions
