#include "Zar/Lt/Core/Path.h"

#include <gtest/gtest.h>

namespace Zar::Lt::Core {
namespace {

TEST(PathTest, FolderAndNameAreJoinedWithOneSlash)
{
    EXPECT_EQ("out/Icons.h", Path::Combine("out", "Icons.h"));
}

TEST(PathTest, FolderEndingInSlashGetsNoSecondOne)
{
    EXPECT_EQ("out/Icons.h", Path::Combine("out/", "Icons.h"));
}

TEST(PathTest, EmptyFolderGivesTheName) { EXPECT_EQ("Icons.h", Path::Combine("", "Icons.h")); }

TEST(PathTest, AbsoluteNameReplacesTheFolder)
{
    EXPECT_EQ("/tmp/x", Path::Combine("out", "/tmp/x"));
    EXPECT_EQ("/tmp/x", Path::Combine("", "/tmp/x"));
}

TEST(PathTest, EmptyNameGivesTheFolder)
{
    EXPECT_EQ("out", Path::Combine("out", ""));
    EXPECT_EQ("out/", Path::Combine("out/", ""));
    EXPECT_EQ("", Path::Combine("", ""));
}

TEST(PathTest, RootFolder) { EXPECT_EQ("/x", Path::Combine("/", "x")); }

TEST(PathTest, NothingIsNormalised)
{
    EXPECT_EQ("a//b", Path::Combine("a//", "b"));
    EXPECT_EQ("out/./x", Path::Combine("out", "./x"));
    EXPECT_EQ("out/../x", Path::Combine("out", "../x"));
    EXPECT_EQ("out/x//", Path::Combine("out", "x//"));
}

TEST(PathTest, OnlySlashIsASeparator)
{
    EXPECT_EQ("out\\/x", Path::Combine("out\\", "x"));
    EXPECT_EQ("out/\\x", Path::Combine("out", "\\x"));
}

TEST(PathTest, ViewsAreReadOnlyUpToTheirSize)
{
    char const folder[] = "out/ignored";
    char const name[] = "Icons.hpp";
    EXPECT_EQ("out/Icons.h", Path::Combine(std::string_view(folder, 3), std::string_view(name, 7)));
}

} // namespace
} // namespace Zar::Lt::Core
