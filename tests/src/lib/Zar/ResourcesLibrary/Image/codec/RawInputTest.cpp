#include "Zar/ResourcesLibrary/Image/codec/RawInput.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using testing::StrEq;
using testing::ThrowsMessage;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Exceptions::NotSupported;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

constexpr size_t kFrameSize = 800 * 480 * 4;

// Bytes that differ from their neighbours and from zero, so that a shifted or partial copy shows.
std::vector<uint8_t> Pattern(size_t size)
{
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<uint8_t>(i * 7 + i / 251 + 1);
    return bytes;
}

class RawInputTest : public testing::Test {
protected:
    ScratchFolder _folder;
    RawInput _loader { FileFormat::None, ImageFormat::Unknown, "%04u.raw", "" };
};

} // namespace

TEST_F(RawInputTest, AFileOfOneFrameLoadsAsAnImageOfTheSameBytes)
{
    std::vector<uint8_t> const bytes = Pattern(kFrameSize);
    std::string const path = _folder.Write("frame.raw", bytes);

    MutableImage const image = _loader.Load(path.c_str());

    EXPECT_EQ(800, image.Info().Width());
    EXPECT_EQ(480, image.Info().Height());
    EXPECT_EQ(3200u, image.Info().Stride());
    EXPECT_EQ(ImageFormat::Bgra, image.Info().Format());
    EXPECT_EQ(1, image.Info()._bottomUp);
    EXPECT_EQ(0u, image.Info()._reserved1);
    EXPECT_EQ(0u, image.Info()._reserved2);
    EXPECT_EQ(0, image.Info()._attribute);
    EXPECT_TRUE(bytes == image.Buffer());
}

TEST_F(RawInputTest, BytesBeyondOneFrameAreIgnored)
{
    std::vector<uint8_t> const bytes = Pattern(kFrameSize + 100);
    std::string const path = _folder.Write("long.raw", bytes);

    MutableImage const image = _loader.Load(path.c_str());

    ASSERT_EQ(kFrameSize, image.Buffer().size());
    EXPECT_TRUE(std::equal(image.Buffer().begin(), image.Buffer().end(), bytes.begin()));
}

TEST_F(RawInputTest, AShortFileFillsTheTopOfTheFrameAndLeavesTheRestZero)
{
    std::vector<uint8_t> const bytes = Pattern(5000);
    std::string const path = _folder.Write("short.raw", bytes);

    MutableImage const image = _loader.Load(path.c_str());

    ASSERT_EQ(kFrameSize, image.Buffer().size());
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), image.Buffer().begin()));
    EXPECT_TRUE(
        std::all_of(image.Buffer().begin() + 5000, image.Buffer().end(), [](uint8_t b) { return b == 0; }));
}

TEST_F(RawInputTest, AnEmptyFileLoadsAsAnAllZeroFrame)
{
    std::string const path = _folder.Write("empty.raw", std::vector<uint8_t>());

    MutableImage const image = _loader.Load(path.c_str());

    EXPECT_EQ(800, image.Info().Width());
    EXPECT_EQ(std::vector<uint8_t>(kFrameSize, 0), image.Buffer());
}

TEST_F(RawInputTest, LoadOfAStringPathReadsTheFile)
{
    std::vector<uint8_t> const bytes = Pattern(kFrameSize);
    std::string const path = _folder.Write("frame.raw", bytes);

    EXPECT_TRUE(bytes == _loader.Load(path).Buffer());
}

TEST_F(RawInputTest, AMissingFileFails)
{
    std::string const path = _folder.PathOf("missing.raw");

    EXPECT_THAT([&] { _loader.Load(path.c_str()); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("cannot open file '" + path + "'")));
}

TEST_F(RawInputTest, AFolderFails)
{
    std::string const path = _folder.Path().string();

    EXPECT_THAT([&] { _loader.Load(path.c_str()); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("cannot open file '" + path + "'")));
}

TEST_F(RawInputTest, ANullPathFailsAsAnEmptyPath)
{
    EXPECT_THAT([&] { _loader.Load(static_cast<char const*>(nullptr)); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("cannot open file ''")));
}

TEST_F(RawInputTest, FailureNamesTheLoader)
{
    try {
        _loader.Load("");
        FAIL() << "no exception";
    } catch (ResourcesLibraryException const& e) {
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/codec/RawInput", e.Source()._file);
        // The compiler spells the rest of the signature: only the loader's name is promised.
        EXPECT_THAT(e.Source()._function, testing::HasSubstr(" RawInput::Load("));
    }
}

TEST_F(RawInputTest, LoadHeaderIsNotSupported)
{
    std::string const path = _folder.Write("frame.raw", Pattern(64));

    EXPECT_THAT([&] { _loader.LoadHeader(path.c_str()); },
        ThrowsMessage<NotSupported>(StrEq("Input::Read not supported")));
}
