#include "Zar/Lt/Exceptions/Symbol.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace Zar::Lt::Exceptions {
namespace {

std::string const CrcNextLine = "/usr/lib/libzar.so(_ZN3Zar2Lt4Core5Crc164NextEh+0x2a) [0x7f0012345678]";

// True when every character of `view` lies inside `owner`'s characters.
bool PointsInto(std::string_view view, std::string_view owner)
{
    std::less_equal<char const*> const notAfter;
    return notAfter(owner.data(), view.data())
        && notAfter(view.data() + view.size(), owner.data() + owner.size());
}

void ExpectEmpty(Symbol const& symbol)
{
    EXPECT_TRUE(symbol.LibraryFullPath().empty());
    EXPECT_TRUE(symbol.LibraryName().empty());
    EXPECT_TRUE(symbol.Mangled().empty());
    EXPECT_TRUE(symbol.Signature().empty());
    EXPECT_TRUE(symbol.FullPath().empty());
    EXPECT_TRUE(symbol.Path().empty());
    EXPECT_TRUE(symbol.Namespace().empty());
    EXPECT_TRUE(symbol.Class().empty());
    EXPECT_TRUE(symbol.Name().empty());
    EXPECT_TRUE(symbol.Parameters().empty());
    EXPECT_EQ(0, symbol.Offset());
    EXPECT_EQ(0u, symbol.Address());
    EXPECT_EQ(nullptr, symbol.Source()._function);
    EXPECT_EQ(nullptr, symbol.Source()._file);
    EXPECT_EQ(0u, symbol.Source()._line);
}

void ExpectCrcNext(Symbol const& symbol)
{
    EXPECT_EQ("/usr/lib/libzar.so", symbol.LibraryFullPath());
    EXPECT_EQ("libzar.so", symbol.LibraryName());
    EXPECT_EQ("_ZN3Zar2Lt4Core5Crc164NextEh", symbol.Mangled());
    EXPECT_EQ("Zar::Lt::Core::Crc16::Next(unsigned char)", symbol.Signature());
    EXPECT_EQ("Zar::Lt::Core::Crc16::Next", symbol.FullPath());
    EXPECT_EQ("Zar::Lt::Core::Crc16", symbol.Path());
    EXPECT_EQ("Zar::Lt::Core", symbol.Namespace());
    EXPECT_EQ("Crc16", symbol.Class());
    EXPECT_EQ("Next", symbol.Name());
    EXPECT_EQ("unsigned char", symbol.Parameters());
    EXPECT_EQ(0x2a, symbol.Offset());
    EXPECT_EQ(0x7f0012345678u, symbol.Address());
}

TEST(SymbolTest, DefaultSymbolIsEmpty)
{
    Symbol const symbol;
    ExpectEmpty(symbol);
}

TEST(SymbolTest, PlainFunctionLineGivesLibraryNameOffsetAndAddress)
{
    Symbol const symbol("./packager(main+0x1c) [0x8a4]");
    EXPECT_EQ("./packager", symbol.LibraryFullPath());
    EXPECT_EQ("packager", symbol.LibraryName());
    EXPECT_EQ("main", symbol.Mangled());
    EXPECT_EQ(0x1c, symbol.Offset());
    EXPECT_EQ(0x8a4u, symbol.Address());
    EXPECT_EQ("main", symbol.Signature());
    EXPECT_EQ("main", symbol.Name());
    EXPECT_EQ("main", symbol.FullPath());
    EXPECT_TRUE(symbol.Path().empty());
    EXPECT_TRUE(symbol.Namespace().empty());
    EXPECT_TRUE(symbol.Class().empty());
    EXPECT_TRUE(symbol.Parameters().empty());
}

TEST(SymbolTest, MangledMemberFunctionSplitsIntoNamespaceClassNameAndParameters)
{
    Symbol const symbol(CrcNextLine);
    ExpectCrcNext(symbol);
}

TEST(SymbolTest, LineViewsPointIntoTheGivenLine)
{
    Symbol const symbol(CrcNextLine);
    EXPECT_TRUE(PointsInto(symbol.LibraryFullPath(), CrcNextLine));
    EXPECT_TRUE(PointsInto(symbol.Mangled(), CrcNextLine));
    EXPECT_TRUE(PointsInto(symbol.Name(), symbol.Signature()));
}

TEST(SymbolTest, LineWithoutParenthesisHasNoLibraryAndRunsToTheLastBracket)
{
    Symbol const symbol("./packager [0x8a4]");
    EXPECT_TRUE(symbol.LibraryFullPath().empty());
    EXPECT_TRUE(symbol.LibraryName().empty());
    EXPECT_EQ("./packager ", symbol.Mangled());
    EXPECT_EQ("./packager ", symbol.Signature());
    EXPECT_EQ(0, symbol.Offset());
    EXPECT_EQ(0x8a4u, symbol.Address());
}

TEST(SymbolTest, LibraryWithoutSlashIsItsOwnName)
{
    Symbol const symbol("packager(main+0x1) [0x2]");
    EXPECT_EQ("packager", symbol.LibraryFullPath());
    EXPECT_EQ("packager", symbol.LibraryName());
}

TEST(SymbolTest, LineWithOnlyAnOffsetHasNoSymbol)
{
    Symbol const symbol("/lib/x86_64-linux-gnu/libc.so.6(+0x2724a) [0x7fd7adc4524a]");
    EXPECT_EQ("libc.so.6", symbol.LibraryName());
    EXPECT_TRUE(symbol.Mangled().empty());
    EXPECT_TRUE(symbol.Signature().empty());
    EXPECT_TRUE(symbol.Name().empty());
    EXPECT_EQ(0x2724a, symbol.Offset());
    EXPECT_EQ(0x7fd7adc4524au, symbol.Address());
}

TEST(SymbolTest, LineWithoutCloseOrBracketsTakesTheRestAsSymbol)
{
    Symbol const symbol("lib(name");
    EXPECT_EQ("lib", symbol.LibraryName());
    EXPECT_EQ("name", symbol.Mangled());
    EXPECT_EQ("name", symbol.Name());
    EXPECT_EQ(0u, symbol.Address());
}

TEST(SymbolTest, EmptyLineLeavesEverythingEmpty)
{
    Symbol const symbol(std::string_view {});
    ExpectEmpty(symbol);
}

TEST(SymbolTest, MissingOffsetDigitsReadAsZero)
{
    Symbol const symbol("lib(f+) [0x]");
    EXPECT_EQ("f", symbol.Mangled());
    EXPECT_EQ(0, symbol.Offset());
    EXPECT_EQ(0u, symbol.Address());
}

// The offset is read as a 64-bit number, as long is on x86-64, on every machine: where long has 32
// bits it would saturate at 0x7fffffff instead.
TEST(SymbolTest, OffsetBeyondThirtyOneBitsWrapsNegative)
{
    Symbol const symbol("lib(f+0xffffffff) [0x1]");
    EXPECT_EQ(-1, symbol.Offset());
}

TEST(SymbolTest, OffsetBeyondSixtyFourBitsSaturatesAtTheLargest64BitNumberThenWraps)
{
    Symbol const symbol("lib(f+0x123456789abcdef01) [0x1]");
    EXPECT_EQ(-1, symbol.Offset());
    Symbol const thirtyTwoBits("lib(f+0x180000000) [0x1]");
    EXPECT_EQ(std::numeric_limits<int32_t>::min(), thirtyTwoBits.Offset());
}

// A symbol name that is also the code of a built-in type demangles as that type.
TEST(SymbolTest, SingleLetterSymbolDemanglesAsABuiltInType)
{
    Symbol const symbol("lib(i+0x1) [0x2]");
    EXPECT_EQ("i", symbol.Mangled());
    EXPECT_EQ("int", symbol.Signature());
    EXPECT_EQ("int", symbol.Name());
}

TEST(SymbolTest, FillReplacesWhatAnEarlierFillFound)
{
    Symbol symbol(CrcNextLine);
    symbol.Fill("./x [0x10]");
    EXPECT_TRUE(symbol.LibraryName().empty());
    EXPECT_EQ("./x ", symbol.Name());
    EXPECT_TRUE(symbol.Class().empty());
    EXPECT_TRUE(symbol.Parameters().empty());
    EXPECT_EQ(0, symbol.Offset());
    EXPECT_EQ(0x10u, symbol.Address());
}

TEST(SymbolTest, FillOwnedKeepsTheViewsValidAfterTheLineIsGone)
{
    Symbol symbol;
    {
        std::string line = CrcNextLine;
        symbol.FillOwned(line);
        line.assign(line.size(), '#');
    }
    ExpectCrcNext(symbol);
}

TEST(SymbolTest, TwoPartNameHasClassButNoNamespace)
{
    Symbol symbol;
    symbol.SetSignature("Crc16::Reset()");
    EXPECT_EQ("Crc16::Reset()", symbol.Signature());
    EXPECT_EQ("Crc16::Reset", symbol.FullPath());
    EXPECT_EQ("Crc16", symbol.Path());
    EXPECT_EQ("Crc16", symbol.Class());
    EXPECT_TRUE(symbol.Namespace().empty());
    EXPECT_EQ("Reset", symbol.Name());
    EXPECT_TRUE(symbol.Parameters().empty());
}

TEST(SymbolTest, TextAfterTheParameterListIsNotPartOfAnyView)
{
    Symbol symbol;
    symbol.SetSignature("A::B::C::Get(int, char) const");
    EXPECT_EQ("A::B::C::Get", symbol.FullPath());
    EXPECT_EQ("A::B", symbol.Namespace());
    EXPECT_EQ("C", symbol.Class());
    EXPECT_EQ("Get", symbol.Name());
    EXPECT_EQ("int, char", symbol.Parameters());
}

TEST(SymbolTest, LeadingColonsDoNotUnderflow)
{
    Symbol symbol;
    symbol.SetSignature("::f(int)");
    EXPECT_EQ("f", symbol.Name());
    EXPECT_EQ("", symbol.Path());
    EXPECT_EQ("", symbol.Class());
    EXPECT_EQ("", symbol.Namespace());

    symbol.SetSignature(":");
    EXPECT_EQ("", symbol.Name());
    symbol.SetSignature("::a::b");
    EXPECT_EQ("b", symbol.Name());
    EXPECT_EQ("a", symbol.Class());
    EXPECT_EQ("", symbol.Namespace());
}

// The split is by the first '(' and the last ')', so an operator() keeps the algorithm's reading.
TEST(SymbolTest, CallOperatorSplitsAtItsOwnParenthesis)
{
    Symbol symbol;
    symbol.SetSignature("Zar::Foo::operator()(int)");
    EXPECT_EQ("Zar::Foo::operator", symbol.FullPath());
    EXPECT_EQ(")(int", symbol.Parameters());
    EXPECT_EQ("operator", symbol.Name());
}

TEST(SymbolTest, SetSignatureReplacesTheViews)
{
    Symbol symbol(CrcNextLine);
    symbol.SetSignature("main");
    EXPECT_EQ("main", symbol.Name());
    EXPECT_TRUE(symbol.Class().empty());
    EXPECT_TRUE(symbol.Parameters().empty());
    symbol.SetSignature("");
    EXPECT_TRUE(symbol.Name().empty());
    EXPECT_TRUE(symbol.FullPath().empty());
}

TEST(SymbolTest, SetSignatureFromItsOwnText)
{
    Symbol symbol(CrcNextLine);
    symbol.SetSignature(symbol.Signature().substr(15));
    EXPECT_EQ("Crc16::Next(unsigned char)", symbol.Signature());
    EXPECT_EQ("Crc16", symbol.Class());
}

void ExpectUnclosedSignatureRejected(std::string_view signature)
{
    Symbol symbol;
    try {
        symbol.SetSignature(signature);
        FAIL() << "no exception for " << signature;
    } catch (PreCondition const& e) {
        EXPECT_STREQ("PreCondition end != string::npos", e.what());
        EXPECT_STREQ("void Zar::Lt::Exceptions::Symbol::ParseSignature()", e.Source()._function);
        EXPECT_STREQ("lib/Zar/Lt/Exceptions/Symbol", e.Source()._file);
        EXPECT_EQ(24u, e.Source()._line);
    }
    EXPECT_TRUE(symbol.FullPath().empty());
    EXPECT_TRUE(symbol.Name().empty());
}

TEST(SymbolTest, OpenParenthesisWithoutCloseIsAPreCondition)
{
    ExpectUnclosedSignatureRejected("Broken(int");
}

TEST(SymbolTest, CloseBeforeOpenIsAPreCondition) { ExpectUnclosedSignatureRejected("a)b(c"); }

TEST(SymbolTest, FillOfAnUnclosedSymbolIsAPreCondition)
{
    Symbol symbol;
    EXPECT_THROW(symbol.Fill("lib(f(x) [0x1]"), PreCondition);
}

TEST(SymbolTest, ParseAddressReadsTheLastBracketedNumber)
{
    Symbol symbol;
    symbol.ParseAddress("[0x1] x [0xbeef]");
    EXPECT_EQ(0xbeefu, symbol.Address());
}

TEST(SymbolTest, ParseAddressWithoutBracketsChangesNothing)
{
    Symbol symbol("lib(f+0x1) [0x40]");
    symbol.ParseAddress("no address");
    EXPECT_EQ(0x40u, symbol.Address());
    symbol.ParseAddress("[0x50");
    EXPECT_EQ(0x40u, symbol.Address());
    symbol.ParseAddress("0x50]");
    EXPECT_EQ(0x40u, symbol.Address());
}

TEST(SymbolTest, ParseAddressWithReversedBracketsReadsZero)
{
    Symbol symbol("lib(f+0x1) [0x40]");
    symbol.ParseAddress("]0x50[");
    EXPECT_EQ(0u, symbol.Address());
}

TEST(SymbolTest, MoveRepointsViewsIntoAShortSignature)
{
    Symbol source;
    source.SetSignature("A::B::f(int)");
    Symbol const moved(std::move(source));
    EXPECT_EQ("A::B::f(int)", moved.Signature());
    EXPECT_EQ("A", moved.Namespace());
    EXPECT_EQ("B", moved.Class());
    EXPECT_EQ("f", moved.Name());
    EXPECT_EQ("int", moved.Parameters());
    EXPECT_TRUE(PointsInto(moved.FullPath(), moved.Signature()));
    EXPECT_TRUE(PointsInto(moved.Parameters(), moved.Signature()));
}

TEST(SymbolTest, MoveRepointsViewsIntoAnOwnedShortLine)
{
    Symbol source;
    source.FillOwned("a/b(f+0x1) [0x2]");
    Symbol const moved(std::move(source));
    EXPECT_EQ("a/b", moved.LibraryFullPath());
    EXPECT_EQ("b", moved.LibraryName());
    EXPECT_EQ("f", moved.Mangled());
    EXPECT_EQ(1, moved.Offset());
    EXPECT_EQ(2u, moved.Address());
}

TEST(SymbolTest, MoveKeepsViewsIntoAForeignLine)
{
    Symbol source(CrcNextLine);
    Symbol const moved(std::move(source));
    ExpectCrcNext(moved);
    EXPECT_TRUE(PointsInto(moved.Mangled(), CrcNextLine));
}

TEST(SymbolTest, MovedFromSymbolIsEmpty)
{
    Symbol source;
    source.FillOwned(CrcNextLine);
    Symbol const moved(std::move(source));
    ExpectEmpty(source);
    ExpectCrcNext(moved);
}

TEST(SymbolTest, MoveAssignmentReplacesEverything)
{
    Symbol source;
    source.FillOwned("x(main+0x3) [0x4]");
    Symbol target(CrcNextLine);
    target = std::move(source);
    EXPECT_EQ("x", target.LibraryName());
    EXPECT_EQ("main", target.Name());
    EXPECT_TRUE(target.Class().empty());
    EXPECT_EQ(3, target.Offset());
    EXPECT_EQ(4u, target.Address());
}

TEST(SymbolTest, SelfMoveAssignmentKeepsTheSymbol)
{
    Symbol symbol;
    symbol.FillOwned(CrcNextLine);
    Symbol& alias = symbol;
    symbol = std::move(alias);
    ExpectCrcNext(symbol);
}

} // namespace
} // namespace Zar::Lt::Exceptions
