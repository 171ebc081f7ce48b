#include "Zar/Lt/Exceptions/Check.h"

#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gtest/gtest.h>

#include <string>

namespace Zar::Lt::Exceptions {
namespace {

char const* requireFourFunction = nullptr;

void RequireFour(int bpp)
{
    requireFourFunction = __PRETTY_FUNCTION__;
    ZAR_PRECONDITION(bpp == 4);
}

char const kFixedFunction[] = "void Somewhere::Fixed(const char*)";

void RequireFixed(bool condition)
{
    ZAR_CHECK(PreCondition, condition, "", ZAR_SOURCE_INFO_OF(kFixedFunction, "fixed/Place", 7));
}

void PromiseSmall(unsigned actual, unsigned size)
{
    ZAR_CHECK(PostCondition, actual <= size, "too long", ZAR_SOURCE_INFO_AT("some/Place", 42));
}

TEST(CheckTest, PreConditionMessageIsTheWordAndTheConditionText)
{
    try {
        RequireFour(8);
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ("PreCondition bpp == 4", e.what());
        // The enclosing function's signature as this compiler spells it.
        ASSERT_NE(nullptr, requireFourFunction);
        EXPECT_STREQ(requireFourFunction, e.Source()._function);
        EXPECT_STREQ("tests/lib/Zar/Lt/Exceptions/CheckTest", e.Source()._file);
        EXPECT_EQ(17u, e.Source()._line);
    }
}

TEST(CheckTest, AFixedFunctionTextIsKeptAsGiven)
{
    try {
        RequireFixed(false);
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ("PreCondition condition", e.what());
        EXPECT_EQ(kFixedFunction, e.Source()._function);
        EXPECT_STREQ("fixed/Place", e.Source()._file);
        EXPECT_EQ(7u, e.Source()._line);
    }
}

TEST(CheckTest, DetailAndFixedPlaceAreKept)
{
    try {
        PromiseSmall(5, 4);
        FAIL() << "no exception";
    } catch (PostCondition const& e) {
        EXPECT_STREQ("PostCondition actual <= size too long", e.what());
        EXPECT_STREQ("some/Place", e.Source()._file);
        EXPECT_EQ(42u, e.Source()._line);
    }
}

void PromiseShort(unsigned actual, unsigned size)
{
    ZAR_CHECK(PostCondition, actual <= size, "", ZAR_SOURCE_INFO_LINE(99));
}

TEST(CheckTest, AFixedLineKeepsThisFile)
{
    try {
        PromiseShort(5, 4);
        FAIL() << "no exception";
    } catch (PostCondition const& e) {
        EXPECT_STREQ("PostCondition actual <= size", e.what());
        EXPECT_STREQ("tests/lib/Zar/Lt/Exceptions/CheckTest", e.Source()._file);
        EXPECT_EQ(99u, e.Source()._line);
    }
}

TEST(CheckTest, HoldingConditionThrowsNothing)
{
    EXPECT_NO_THROW(RequireFour(4));
    EXPECT_NO_THROW(PromiseSmall(4, 4));
}

TEST(CheckTest, ResourcesLibraryExceptionCarriesFreeMessageAndStack)
{
    Zar::ResourcesLibrary::ResourcesLibraryException e(ZAR_SOURCE_INFO(), "Cannot open x");
    EXPECT_STREQ("Cannot open x", e.what());
    EXPECT_FALSE(e.CallStack().empty());
}

} // namespace
} // namespace Zar::Lt::Exceptions
