#include "Zar/ResourcesLibrary/Image/ByteStream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

using Zar::ResourcesLibrary::Image::ByteStream;

namespace {

std::vector<uint8_t> Digits() { return { '0', '1', '2', '3', '4', '5', '6', '7', '8', '9' }; }

} // namespace

TEST(ByteStreamTest, ReadsItsBytesInOrderAndEnds)
{
    ByteStream stream(Digits());
    char text[4] = {};
    stream.read(text, 3);
    EXPECT_EQ("012", std::string(text, 3));
    EXPECT_EQ(4, stream.readsome(text, 4));
    EXPECT_EQ("3456", std::string(text, 4));
    stream.read(text, 4);
    EXPECT_EQ(3, stream.gcount());
    EXPECT_TRUE(stream.eof());
    EXPECT_TRUE(stream.fail());
}

TEST(ByteStreamTest, TellsAndSeeksWithinItsBytes)
{
    ByteStream stream(Digits());
    stream.seekg(4);
    EXPECT_EQ(4, stream.tellg());
    stream.seekg(0, std::ios::end);
    EXPECT_EQ(10, stream.tellg());
    stream.seekg(-3, std::ios::cur);
    EXPECT_EQ('7', stream.get());
    stream.seekg(2, std::ios::beg);
    EXPECT_EQ('2', stream.get());
}

TEST(ByteStreamTest, RefusesSeeksOutsideItsBytes)
{
    ByteStream stream(Digits());
    stream.seekg(3);
    stream.seekg(11);
    EXPECT_TRUE(stream.fail());
    stream.clear();
    EXPECT_EQ(3, stream.tellg());
    stream.seekg(-4, std::ios::cur);
    EXPECT_TRUE(stream.fail());
    stream.clear();
    stream.seekg(1, std::ios::end);
    EXPECT_TRUE(stream.fail());
    stream.clear();
    EXPECT_EQ('3', stream.get());
}

TEST(ByteStreamTest, AnEmptyStreamEndsAtOnce)
{
    ByteStream stream({});
    EXPECT_EQ(0, stream.tellg());
    EXPECT_EQ(std::char_traits<char>::eof(), stream.get());
    EXPECT_TRUE(stream.eof());
}
