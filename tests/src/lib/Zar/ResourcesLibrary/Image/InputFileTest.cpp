#include "Zar/ResourcesLibrary/Image/InputFile.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/ByteStream.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Image::ByteStream;
using Zar::ResourcesLibrary::Image::InputFile;

namespace {

std::string Content(std::istream& stream)
{
    return { std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() };
}

} // namespace

TEST(InputFileTest, AnOrdinaryFileIsReadWholeIntoMemory)
{
    ScratchFolder folder;
    std::string const path = folder.Write("a.bmp", std::string("BM\0\x01rest", 8));
    auto stream = InputFile::Open(path.c_str());
    ASSERT_NE(nullptr, stream);
    EXPECT_TRUE(dynamic_cast<ByteStream*>(stream.get()) != nullptr);
    EXPECT_EQ(std::string("BM\0\x01rest", 8), Content(*stream));
    auto const bytes = InputFile::ReadWhole(path.c_str());
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(8u, bytes->size());
}

TEST(InputFileTest, AnEmptyFileOpensAndHoldsNothing)
{
    ScratchFolder folder;
    std::string const path = folder.Write("empty.bmp", "");
    auto stream = InputFile::Open(path.c_str());
    ASSERT_NE(nullptr, stream);
    EXPECT_EQ("", Content(*stream));
    EXPECT_FALSE(InputFile::ReadWhole(path.c_str()).has_value());
}

TEST(InputFileTest, APseudoFileOfSizeZeroIsStreamedWithItsText)
{
    // The kernel reports a size of 0 for it, yet it holds a line.
    auto stream = InputFile::Open("/proc/self/stat");
    ASSERT_NE(nullptr, stream);
    EXPECT_FALSE(Content(*stream).empty());
    EXPECT_FALSE(InputFile::ReadWhole("/proc/self/stat").has_value());
}

TEST(InputFileTest, AFileThatCannotBeOpenedGivesNoStream)
{
    ScratchFolder folder;
    EXPECT_EQ(nullptr, InputFile::Open(folder.PathOf("missing.bmp").c_str()));
    EXPECT_EQ(nullptr, InputFile::Open(""));
    EXPECT_EQ(nullptr, InputFile::Open(nullptr));
    EXPECT_FALSE(InputFile::ReadWhole(folder.PathOf("missing.bmp").c_str()).has_value());
    EXPECT_FALSE(InputFile::ReadWhole(nullptr).has_value());
}

TEST(InputFileTest, AFileLargerThanTheLimitIsStreamedNotHeld)
{
    ScratchFolder folder;
    std::string const path = folder.Write("large.bmp", "BM");
    std::filesystem::resize_file(path, InputFile::kWholeReadLimit + 1);
    EXPECT_FALSE(InputFile::ReadWhole(path.c_str()).has_value());
    auto stream = InputFile::Open(path.c_str());
    ASSERT_NE(nullptr, stream);
    EXPECT_TRUE(dynamic_cast<ByteStream*>(stream.get()) == nullptr);
    char start[2] = {};
    stream->read(start, 2);
    EXPECT_EQ("BM", std::string(start, 2));
}

TEST(InputFileTest, AFileOfExactlyTheLimitIsHeld)
{
    ScratchFolder folder;
    std::string const path = folder.Write("limit.bmp", "");
    std::filesystem::resize_file(path, InputFile::kWholeReadLimit);
    auto const bytes = InputFile::ReadWhole(path.c_str());
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(InputFile::kWholeReadLimit, bytes->size());
}

TEST(InputFileTest, SpecialFilesAreNeverReadWhole)
{
    ScratchFolder folder;
    // A pipe without a writer: opening it to read whole must neither block nor read.
    std::string const pipe = folder.PathOf("pipe.bmp");
    ASSERT_EQ(0, ::mkfifo(pipe.c_str(), 0600));
    EXPECT_FALSE(InputFile::ReadWhole(pipe.c_str()).has_value());
    // A device without end and a folder: no size to read to.
    EXPECT_FALSE(InputFile::ReadWhole("/dev/zero").has_value());
    EXPECT_FALSE(InputFile::ReadWhole(folder.Path().c_str()).has_value());
}

TEST(InputFileTest, ADeviceIsStreamedAsItArrives)
{
    auto stream = InputFile::Open("/dev/zero");
    ASSERT_NE(nullptr, stream);
    char bytes[3] = { 1, 1, 1 };
    stream->read(bytes, 3);
    EXPECT_EQ(std::string(3, '\0'), std::string(bytes, 3));
}
