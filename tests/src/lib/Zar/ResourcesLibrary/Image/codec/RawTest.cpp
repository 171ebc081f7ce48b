#include "Zar/ResourcesLibrary/Image/codec/Raw.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

namespace {

class RawTest : public testing::Test
{
protected:
    RawTest()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "raw-XXXXXX").string();
        _folder = ::mkdtemp(pattern.data());
    }
    ~RawTest() override { std::filesystem::remove_all(_folder); }

    std::string Write(std::string const& name, std::string const& content) const
    {
        std::string const path = (_folder / name).string();
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    std::filesystem::path _folder;
};

constexpr size_t kNoLimit = std::numeric_limits<size_t>::max();

} // namespace

TEST_F(RawTest, OpenGivesTheFileSizeAndLeavesTheStreamAtTheStart)
{
    std::string const path = Write("frame.raw", "abcdefgh");
    std::ifstream stream;

    size_t const size = Raw::Open(stream, path.c_str(), kNoLimit);

    EXPECT_EQ(8u, size);
    ASSERT_TRUE(stream.good());
    EXPECT_EQ('a', stream.get());
}

TEST_F(RawTest, OpenGivesNoMoreThanTheLimit)
{
    std::string const path = Write("frame.raw", "abcdefgh");
    std::ifstream stream;

    EXPECT_EQ(3u, Raw::Open(stream, path.c_str(), 3));
    EXPECT_TRUE(stream.good());
}

TEST_F(RawTest, OpenOfAnEmptyFileGivesZeroAndAGoodStream)
{
    std::string const path = Write("empty.raw", "");
    std::ifstream stream;

    EXPECT_EQ(0u, Raw::Open(stream, path.c_str(), kNoLimit));
    EXPECT_FALSE(stream.fail());
}

TEST_F(RawTest, OpenOfAMissingFileGivesZeroAndAFailedStream)
{
    std::ifstream stream;

    EXPECT_EQ(0u, Raw::Open(stream, (_folder / "missing.raw").c_str(), kNoLimit));
    EXPECT_TRUE(stream.fail());
}

TEST_F(RawTest, OpenOfANullPathGivesZeroAndAFailedStream)
{
    std::ifstream stream;

    EXPECT_EQ(0u, Raw::Open(stream, nullptr, kNoLimit));
    EXPECT_TRUE(stream.fail());
}
