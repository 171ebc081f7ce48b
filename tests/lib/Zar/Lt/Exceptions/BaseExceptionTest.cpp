#include "Zar/Lt/Exceptions/BaseException.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/Lt/Exceptions/Symbol.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include "StackProbe.h"

#include <gtest/gtest.h>

#include <exception>
#include <stdexcept>
#include <string>
#include <typeinfo>

// Raisers with exported names, so that the captured stacks can be checked for them.
namespace Zar::Lt::Exceptions::ExceptionProbe {

ZAR_STACK_PROBE void RequireFourBitsPerPixel(int bpp) { ZAR_PRECONDITION(bpp == 4); }

} // namespace Zar::Lt::Exceptions::ExceptionProbe

namespace Zar::Lt::Exceptions {
namespace {

using Zar::ResourcesLibrary::ResourcesLibraryException;

SourceInfo const Here { "void Here()", "tests/Here", 7 };

// Runs `inner` and rethrows whatever it throws nested in `outer`.
template <typename Outer, typename Inner> void ThrowNested(Outer const& outer, Inner const& inner)
{
    try {
        throw inner;
    } catch (...) {
        std::throw_with_nested(outer);
    }
}

// Catches what `raise` throws and hands it to `check` while the exception is still alive.
template <typename Raise, typename Check> void WithCaught(Raise raise, Check check)
{
    try {
        raise();
        FAIL() << "no exception";
    } catch (BaseException const& e) {
        check(e);
    }
}

// Outer BaseException <- inner BaseException <- int.
void ThrowBaseOverBaseOverInt()
{
    try {
        ThrowNested(BaseException(Here, "inner"), 42);
    } catch (...) {
        std::throw_with_nested(BaseException(Here, "outer"));
    }
}

TEST(BaseExceptionTest, WhatOfACheckedConditionIsTheConditionText)
{
    try {
        ExceptionProbe::RequireFourBitsPerPixel(1);
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ("PreCondition bpp == 4", e.what());
    }
}

TEST(BaseExceptionTest, KeepsMessageAndSource)
{
    BaseException const e(Here, "Cannot open x");
    EXPECT_STREQ("Cannot open x", e.what());
    EXPECT_STREQ("void Here()", e.Source()._function);
    EXPECT_STREQ("tests/Here", e.Source()._file);
    EXPECT_EQ(7u, e.Source()._line);
}

TEST(BaseExceptionTest, CallStackStartsAtTheConstructorAndHoldsTheRaiser)
{
    try {
        ExceptionProbe::RequireFourBitsPerPixel(1);
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        auto const& stack = e.CallStack();
        ASSERT_FALSE(stack.empty());
        EXPECT_EQ("BaseException", Symbol(stack.front()).Name());
        bool raiserFound = false;
        for (auto const& line : stack)
            raiserFound = raiserFound || Symbol(line).Name() == "RequireFourBitsPerPixel";
        EXPECT_TRUE(raiserFound);
    }
}

TEST(BaseExceptionTest, FamilyIsCaughtThroughItsTemplateBases)
{
    EXPECT_THROW(throw PreCondition(Here, "p"), Logical<PreCondition>);
    EXPECT_THROW(throw PostCondition(Here, "p"), Base<PostCondition>);
    EXPECT_THROW(throw NotSupported(Here, "Input::Read not supported"), Logical<NotSupported>);
    EXPECT_THROW(throw ResourcesLibraryException(Here, "r"), BaseException);
    EXPECT_THROW(throw NotSupported(Here, "n"), std::exception);
}

TEST(BaseExceptionTest, WalksOfNullAreNull)
{
    EXPECT_EQ(nullptr, BaseException::Inner(nullptr));
    EXPECT_EQ(nullptr, BaseException::MostInner(nullptr));
    EXPECT_EQ(nullptr, BaseException::InnerBase(nullptr));
    EXPECT_EQ(nullptr, BaseException::MostInnerBase(nullptr));
}

TEST(BaseExceptionTest, ExceptionWithoutCauseIsItsOwnMostInner)
{
    BaseException const e(Here, "alone");
    EXPECT_EQ(nullptr, BaseException::Inner(&e));
    EXPECT_EQ(&e, BaseException::MostInner(&e));
    EXPECT_EQ(nullptr, BaseException::InnerBase(&e));
    EXPECT_EQ(&e, BaseException::MostInnerBase(&e));
    EXPECT_TRUE(e.AllInner().empty());
}

TEST(BaseExceptionTest, StandardExceptionWithoutCauseIsItsOwnMostInner)
{
    std::runtime_error const e("plain");
    EXPECT_EQ(nullptr, BaseException::Inner(&e));
    EXPECT_EQ(&e, BaseException::MostInner(&e));
}

TEST(BaseExceptionTest, CauseEndingInAnIntStopsTheWalks)
{
    WithCaught(ThrowBaseOverBaseOverInt, [](BaseException const& outer) {
        EXPECT_STREQ("outer", outer.what());
        auto const causes = outer.AllInner();
        ASSERT_EQ(1u, causes.size());
        EXPECT_STREQ("inner", causes[0]->what());

        BaseException const* inner = BaseException::MostInnerBase(&outer);
        ASSERT_NE(nullptr, inner);
        EXPECT_STREQ("inner", inner->what());
        EXPECT_EQ(causes[0], inner);
        EXPECT_EQ(nullptr, BaseException::Inner(inner));
        EXPECT_EQ(nullptr, BaseException::InnerBase(inner));
        EXPECT_EQ(inner, BaseException::InnerBase(&outer));
        EXPECT_EQ(inner, BaseException::MostInner(&outer));
    });
}

TEST(BaseExceptionTest, StandardCauseEndsTheBaseWalksButNotTheStandardOnes)
{
    auto raise = [] {
        try {
            ThrowNested(ResourcesLibraryException(Here, "middle"), std::runtime_error("root"));
        } catch (...) {
            std::throw_with_nested(PreCondition(Here, "PreCondition top"));
        }
    };
    WithCaught(raise, [](BaseException const& top) {
        auto const causes = top.AllInner();
        ASSERT_EQ(2u, causes.size());
        EXPECT_STREQ("middle", causes[0]->what());
        EXPECT_STREQ("root", causes[1]->what());

        BaseException const* middle = BaseException::InnerBase(&top);
        ASSERT_NE(nullptr, middle);
        EXPECT_STREQ("middle", middle->what());
        EXPECT_NE(nullptr, dynamic_cast<ResourcesLibraryException const*>(middle));
        EXPECT_EQ(nullptr, BaseException::InnerBase(middle));
        EXPECT_EQ(middle, BaseException::MostInnerBase(&top));
        EXPECT_STREQ("root", BaseException::MostInner(&top)->what());
    });
}

TEST(BaseExceptionTest, DeepChainIsWalkedInOrder)
{
    auto raise = [] {
        try {
            try {
                throw BaseException(Here, "3");
            } catch (...) {
                std::throw_with_nested(BaseException(Here, "2"));
            }
        } catch (...) {
            std::throw_with_nested(BaseException(Here, "1"));
        }
    };
    WithCaught(raise, [](BaseException const& top) {
        auto const causes = top.AllInner();
        ASSERT_EQ(2u, causes.size());
        EXPECT_STREQ("2", causes[0]->what());
        EXPECT_STREQ("3", causes[1]->what());
        EXPECT_STREQ("3", BaseException::MostInnerBase(&top)->what());
        EXPECT_STREQ("3", BaseException::MostInner(&top)->what());
    });
}

TEST(BaseExceptionTest, CauseThatIsNotAnExceptionIsNotReported)
{
    WithCaught([] { ThrowNested(BaseException(Here, "outer"), std::string("text")); },
        [](BaseException const& outer) {
            EXPECT_EQ(nullptr, BaseException::Inner(&outer));
            EXPECT_EQ(&outer, BaseException::MostInner(&outer));
            EXPECT_EQ(&outer, BaseException::MostInnerBase(&outer));
            EXPECT_TRUE(outer.AllInner().empty());
        });
}

TEST(BaseExceptionTest, DemangleGivesTheReadableTypeName)
{
    EXPECT_EQ("Zar::ResourcesLibrary::ResourcesLibraryException",
        BaseException::Demangle(typeid(ResourcesLibraryException).name()));
    EXPECT_EQ("Zar::Lt::Exceptions::Logical<Zar::Lt::Exceptions::NotSupported>",
        BaseException::Demangle(typeid(Logical<NotSupported>).name()));
    EXPECT_EQ("plain text", BaseException::Demangle("plain text"));
}

} // namespace
} // namespace Zar::Lt::Exceptions
