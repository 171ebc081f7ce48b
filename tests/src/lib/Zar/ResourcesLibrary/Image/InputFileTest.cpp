#include "Zar/ResourcesLibrary/Image/InputFile.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/ByteStream.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Image::ByteStream;
using Zar::ResourcesLibrary::Image::InputFile;

namespace {

std::string Content(std::istream& stream)
{
    return { std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() };
}

// Whether the path is a character device: the tests that read one fail with this message, rather
// than pass or wait for nothing, on a machine whose /dev lacks it.
bool IsCharacterDevice(char const* path)
{
    struct stat status { };
    return ::stat(path, &status) == 0 && S_ISCHR(status.st_mode);
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
    ASSERT_TRUE(std::filesystem::exists("/proc/self/stat")) << "/proc is not mounted";
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
    ASSERT_TRUE(IsCharacterDevice("/dev/zero")) << "/dev/zero is missing or not a device";
    EXPECT_FALSE(InputFile::ReadWhole("/dev/zero").has_value());
    EXPECT_FALSE(InputFile::ReadWhole(folder.Path().c_str()).has_value());
}

TEST(InputFileTest, ADeviceIsStreamedAsItArrives)
{
    ASSERT_TRUE(IsCharacterDevice("/dev/zero")) << "/dev/zero is missing or not a device";
    auto stream = InputFile::Open("/dev/zero");
    ASSERT_NE(nullptr, stream);
    char bytes[3] = { 1, 1, 1 };
    stream->read(bytes, 3);
    EXPECT_EQ(std::string(3, '\0'), std::string(bytes, 3));
}

TEST(InputFileTest, APipeIsReadAsItsWriterWritesIt)
{
    ScratchFolder folder;
    std::string const pipe = folder.PathOf("Text.txt");
    ASSERT_EQ(0, ::mkfifo(pipe.c_str(), 0600));
    std::string const text = "XX  \n  XX\n";
    // The writer does what a shell command writing into the pipe does: it opens it, which waits for a
    // reader, writes and closes. SIGPIPE is blocked in its thread, so that a write after the
    // reader left fails instead of ending the tests.
    auto writer = std::async(std::launch::async, [&] {
        sigset_t pipeSignal;
        sigemptyset(&pipeSignal);
        sigaddset(&pipeSignal, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipeSignal, nullptr);
        int const descriptor = ::open(pipe.c_str(), O_WRONLY | O_CLOEXEC);
        if (descriptor < 0)
            return false;
        bool const written
            = ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
        ::close(descriptor);
        return written;
    });
    auto reader = std::async(std::launch::async, [&] {
        auto stream = InputFile::Open(pipe.c_str());
        return stream == nullptr ? std::string("(no stream)") : Content(*stream);
    });
    // A reader left without a writer would wait for ever: after a while, a descriptor open for both
    // reading and writing, closed at once, releases whichever side still waits and ends the
    // reader's stream, so that the test fails rather than hangs.
    bool const finished = reader.wait_for(std::chrono::seconds(60)) == std::future_status::ready
        && writer.wait_for(std::chrono::seconds(60)) == std::future_status::ready;
    if (!finished) {
        int const both = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC);
        if (both >= 0)
            ::close(both);
    }
    EXPECT_TRUE(finished) << "the reader or the writer of the pipe still waited";
    EXPECT_EQ(text, reader.get());
    EXPECT_TRUE(writer.get()) << "the writer's write failed: its reader had left";
}

TEST(InputFileTest, ReadAvailableStopsAtTheFirstShortPiece)
{
    std::istringstream stream("abcde");
    std::vector<uint8_t> const bytes = InputFile::ReadAvailable(stream, 8);
    EXPECT_EQ("abcde", std::string(bytes.begin(), bytes.end()));
}

TEST(InputFileTest, ReadAvailableTakesNoMoreThanAsked)
{
    std::istringstream stream("abcde");
    std::vector<uint8_t> const bytes = InputFile::ReadAvailable(stream, 3);
    EXPECT_EQ("abc", std::string(bytes.begin(), bytes.end()));
    EXPECT_EQ('d', stream.get());
}

TEST(InputFileTest, ReadAvailableOfAHugeSizeHoldsOnlyWhatArrives)
{
    size_t asked = 0;
    std::vector<uint8_t> const bytes
        = InputFile::ReadAvailable(uint64_t { 1 } << 40, [&asked](uint8_t* data, size_t count) {
              asked = count;
              data[0] = 'x';
              return size_t { 1 };
          });
    EXPECT_EQ(std::vector<uint8_t> { 'x' }, bytes);
    // One piece of a bounded size was offered, never the declared size.
    EXPECT_EQ(size_t { 1 } << 20, asked);
}

TEST(InputFileTest, RemainingBytesCountsFromThePositionAndKeepsIt)
{
    std::istringstream stream("abcdef");
    stream.get();
    stream.get();
    EXPECT_EQ(std::optional<uint64_t> { 4 }, InputFile::RemainingBytes(stream));
    EXPECT_EQ('c', stream.get());
}

TEST(InputFileTest, RemainingBytesOfAStreamThatCannotTellIsNothing)
{
    std::istringstream stream("abc");
    stream.setstate(std::ios::failbit);
    EXPECT_EQ(std::nullopt, InputFile::RemainingBytes(stream));
}
