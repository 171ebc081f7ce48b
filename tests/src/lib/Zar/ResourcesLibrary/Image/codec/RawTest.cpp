#include "Zar/ResourcesLibrary/Image/codec/Raw.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <limits>
#include <string>

using Zar::Lt::Core::ScratchFolder;

namespace {

class RawTest : public testing::Test {
protected:
    ScratchFolder _folder;
};

constexpr size_t kNoLimit = std::numeric_limits<size_t>::max();

} // namespace

TEST_F(RawTest, OpenGivesTheFileSizeAndLeavesTheStreamAtTheStart)
{
    std::string const path = _folder.Write("frame.raw", "abcdefgh");
    std::ifstream stream;

    size_t const size = Raw::Open(stream, path.c_str(), kNoLimit);

    EXPECT_EQ(8u, size);
    ASSERT_TRUE(stream.good());
    EXPECT_EQ('a', stream.get());
}

TEST_F(RawTest, OpenGivesNoMoreThanTheLimit)
{
    std::string const path = _folder.Write("frame.raw", "abcdefgh");
    std::ifstream stream;

    EXPECT_EQ(3u, Raw::Open(stream, path.c_str(), 3));
    EXPECT_TRUE(stream.good());
}

TEST_F(RawTest, OpenOfAnEmptyFileGivesZeroAndAGoodStream)
{
    std::string const path = _folder.Write("empty.raw", "");
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
