#include "Zar/Lt/Exceptions/TypeInfo.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <typeinfo>

namespace Zar::Lt::Exceptions {
namespace {

void ExpectNullRejected(std::string (*demangle)(char const*))
{
    try {
        demangle(nullptr);
        FAIL() << "no exception";
    } catch (std::logic_error const& e) {
        EXPECT_STREQ("basic_string: construction from null is not valid", e.what());
    }
}

TEST(TypeInfoTest, DemangleGivesTheQualifiedTypeName)
{
    EXPECT_EQ("Zar::Lt::Exceptions::PreCondition", TypeInfo::Demangle(typeid(PreCondition).name()));
}

TEST(TypeInfoTest, DemangleGivesAFunctionSignature)
{
    EXPECT_EQ(
        "Zar::Lt::Core::Crc16::Next(unsigned char)", TypeInfo::Demangle("_ZN3Zar2Lt4Core5Crc164NextEh"));
}

TEST(TypeInfoTest, DemangleLeavesOtherTextUnchanged)
{
    EXPECT_EQ("main", TypeInfo::Demangle("main"));
    EXPECT_EQ("not a mangled name", TypeInfo::Demangle("not a mangled name"));
    EXPECT_EQ("", TypeInfo::Demangle(""));
}

TEST(TypeInfoTest, DemangleOfNullFailsInTheStringConstruction) { ExpectNullRejected(&TypeInfo::Demangle); }

TEST(TypeInfoTest, DemangleNameOfAClassInANamespaceIsTheClassName)
{
    EXPECT_EQ("PreCondition", TypeInfo::DemangleName(typeid(PreCondition).name()));
}

TEST(TypeInfoTest, DemangleNameWithoutQualificationIsTheWholeName)
{
    EXPECT_EQ("int", TypeInfo::DemangleName(typeid(int).name()));
}

TEST(TypeInfoTest, DemangleNameLeavesOtherTextUnchanged)
{
    EXPECT_EQ("std::not::mangled", TypeInfo::DemangleName("std::not::mangled"));
}

// The cut is at the last ':' of the whole demangled text, parameters included.
TEST(TypeInfoTest, DemangleNameCutsAtTheLastColonOfTheWholeText)
{
    EXPECT_EQ("Next(unsigned char)", TypeInfo::DemangleName("_ZN3Zar2Lt4Core5Crc164NextEh"));
    EXPECT_EQ("exception const&)", TypeInfo::DemangleName("_Z1fRKSt9exception"));
}

TEST(TypeInfoTest, DemangleNameOfNullFailsInTheStringConstruction)
{
    ExpectNullRejected(&TypeInfo::DemangleName);
}

} // namespace
} // namespace Zar::Lt::Exceptions
