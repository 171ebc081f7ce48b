#include "Zar/Lt/Core/ScratchFolder.h"

#include "Zar/Lt/Exceptions/BaseException.h"
#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <type_traits>
#include <vector>

namespace Zar::Lt::Core {
namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::SizeIs;
using testing::StartsWith;
using testing::StrEq;
using testing::ThrowsMessage;
using Zar::Lt::Exceptions::BaseException;
using Zar::Lt::Exceptions::PreCondition;

std::string ReadAll(fs::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

// Sets TMPDIR for a scope and puts back what was there before.
class ScopedTmpDir {
public:
    explicit ScopedTmpDir(std::string const& value)
    {
        if (char const* previous = std::getenv("TMPDIR"))
            _previous = previous;
        ::setenv("TMPDIR", value.c_str(), 1);
    }

    ~ScopedTmpDir()
    {
        if (_previous)
            ::setenv("TMPDIR", _previous->c_str(), 1);
        else
            ::unsetenv("TMPDIR");
    }

    ScopedTmpDir(ScopedTmpDir const&) = delete;
    ScopedTmpDir& operator=(ScopedTmpDir const&) = delete;

private:
    std::optional<std::string> _previous;
};

TEST(ScratchFolderTest, IsAFreshEmptyFolderInTheTemporaryFolder)
{
    ScratchFolder const folder;
    EXPECT_TRUE(fs::is_directory(folder.Path()));
    EXPECT_TRUE(fs::is_empty(folder.Path()));
    EXPECT_TRUE(fs::equivalent(fs::temp_directory_path(), folder.Path().parent_path()));
}

TEST(ScratchFolderTest, ItsNameIsThePrefixAndSixLettersOrDigits)
{
    ScratchFolder const plain;
    EXPECT_THAT(plain.Path().filename().string(), MatchesRegex("zar-scratch-[A-Za-z0-9]{6}"));
    ScratchFolder const named("packinspect");
    EXPECT_THAT(named.Path().filename().string(), MatchesRegex("packinspect-[A-Za-z0-9]{6}"));
    EXPECT_FALSE(named.Path().filename().has_extension());
}

TEST(ScratchFolderTest, TwoFoldersAreDistinct)
{
    ScratchFolder const first("same");
    ScratchFolder const second("same");
    EXPECT_NE(first.Path(), second.Path());
    EXPECT_TRUE(fs::is_directory(first.Path()));
    EXPECT_TRUE(fs::is_directory(second.Path()));
}

TEST(ScratchFolderTest, FollowsTmpDir)
{
    ScratchFolder const outer;
    ScopedTmpDir const tmpDir(outer.Path().string());
    ScratchFolder const inner;
    EXPECT_EQ(outer.Path(), inner.Path().parent_path());
}

TEST(ScratchFolderTest, GoesWithEverythingInIt)
{
    fs::path path;
    {
        ScratchFolder const folder;
        path = folder.Path();
        folder.Write("a.txt", "a");
        folder.Write("deep/er/b.bin", std::vector<uint8_t> { 1, 2, 3 });
        fs::create_directories(folder / "empty/folder");
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST(ScratchFolderTest, DestructionDoesNotThrowWhenTheFolderIsAlreadyGone)
{
    static_assert(std::is_nothrow_destructible_v<ScratchFolder>);
    auto folder = std::make_unique<ScratchFolder>();
    fs::path const path = folder->Path();
    fs::remove_all(path);
    EXPECT_NO_THROW(folder.reset());
    EXPECT_FALSE(fs::exists(path));
}

TEST(ScratchFolderTest, APrefixThatIsNotAPlainNameIsRefused)
{
    EXPECT_THAT([] { ScratchFolder const folder("a/b"); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition prefix.find_first_of(\"/.\") == std::string_view::npos")));
    EXPECT_THAT(
        [] { ScratchFolder const folder("a.b"); }, ThrowsMessage<PreCondition>(HasSubstr("find_first_of")));
}

TEST(ScratchFolderTest, AFolderThatCannotBeMadeThrowsWithThePathAndTheReason)
{
    // A name longer than a folder entry may be (255 bytes) makes mkdtemp fail, whoever runs the test.
    // The message names the path as mkdtemp last tried it, its six unique characters filled in.
    std::string const prefix(300, 'n');
    std::string const start
        = "Cannot create a scratch folder " + (fs::temp_directory_path() / prefix).string() + "-";
    std::string const reason = ": " + std::generic_category().message(ENAMETOOLONG);
    EXPECT_THAT([&prefix] { ScratchFolder const folder(prefix); },
        ThrowsMessage<BaseException>(
            AllOf(StartsWith(start), EndsWith(reason), SizeIs(start.size() + 6 + reason.size()))));
}

TEST(ScratchFolderTest, NoTemporaryFolderThrows)
{
    ScratchFolder const outer;
    ScopedTmpDir const tmpDir((outer / "missing").string());
    EXPECT_THAT([] { ScratchFolder const folder; },
        ThrowsMessage<BaseException>(StartsWith("Cannot create a scratch folder: no temporary folder: ")));
}

TEST(ScratchFolderTest, NamesItsEntries)
{
    ScratchFolder const folder;
    std::string const root = folder.Path().string();
    EXPECT_EQ(root + "/", folder.Prefix());
    EXPECT_EQ(root + "/bmp/icons/Play.bmp", folder.PathOf("bmp/icons/Play.bmp"));
    EXPECT_EQ(folder.Path() / "bmp" / "icons", folder / "bmp" / "icons");
    EXPECT_FALSE(fs::exists(folder / "bmp"));
}

TEST(ScratchFolderTest, WriteKeepsEveryByteAndMakesTheFoldersAbove)
{
    ScratchFolder const folder;
    std::string const text("line\r\nnul\0end", 13);
    std::string const path = folder.Write("bmp/icons/list.txt", text);
    EXPECT_EQ(folder.PathOf("bmp/icons/list.txt"), path);
    EXPECT_EQ(text, ReadAll(path));

    std::vector<uint8_t> const bytes { 0x42, 0x4D, 0x00, 0xFF, 0x0A };
    std::string const binary = folder.Write("a.bmp", bytes);
    EXPECT_EQ(std::string("\x42\x4D\x00\xFF\x0A", 5), ReadAll(binary));
}

TEST(ScratchFolderTest, WriteReplacesAWholeFile)
{
    ScratchFolder const folder;
    folder.Write("list.txt", "a much longer first text\n");
    EXPECT_EQ("short", ReadAll(folder.Write("list.txt", "short")));
    EXPECT_EQ("", ReadAll(folder.Write("list.txt", std::vector<uint8_t> {})));
}

TEST(ScratchFolderTest, WriteThatCannotWriteThrows)
{
    ScratchFolder const folder;
    fs::create_directories(folder / "taken");
    EXPECT_THAT([&folder] { folder.Write("taken", "x"); },
        ThrowsMessage<BaseException>(StrEq("Cannot write " + folder.PathOf("taken"))));
    // A file standing where a folder would have to be made.
    folder.Write("file", "x");
    EXPECT_THAT([&folder] { folder.Write("file/inner.txt", "x"); },
        ThrowsMessage<BaseException>(StrEq("Cannot write " + folder.PathOf("file/inner.txt"))));
}

TEST(ScratchFolderTest, WriteStaysInsideTheFolder)
{
    ScratchFolder const folder;
    EXPECT_THAT([&folder] { folder.Write("/tmp/outside.txt", "x"); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition name.is_relative()")));
}

} // namespace
} // namespace Zar::Lt::Core
