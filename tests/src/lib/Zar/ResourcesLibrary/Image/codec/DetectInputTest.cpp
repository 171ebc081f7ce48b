#include "Zar/ResourcesLibrary/Image/codec/DetectInput.h"

#include "BmpWriter.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/ResourcesLibrary/Image/codec/AsciiInput.h"
#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"
#include "Zar/ResourcesLibrary/Image/codec/QtInput.h"
#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"
#include "Zar/ResourcesLibrary/Image/codec/RawInput.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::BmpWriter;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Exceptions::NotSupported;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::DetectInput;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::Input;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

// A one-line 8-pixel BMP whose pixels are the bits of the given byte.
std::string WriteBmp(ScratchFolder const& folder, std::string const& name, uint8_t pixels)
{
    return folder.Write(name, BmpWriter::Mono(8, { { pixels } }, BmpWriter::BlackFirst).Bytes());
}

std::unique_ptr<DetectInput> MakeLoader(std::string folder = "bmp/icons")
{
    std::unique_ptr<Input> input
        = Input::Create(FileFormat::None, ImageFormat::Unknown, std::move(folder), "");
    return std::unique_ptr<DetectInput>(dynamic_cast<DetectInput*>(input.release()));
}

template <typename Loader> size_t CountOf(DetectInput const& detect)
{
    size_t count = 0;
    for (auto const& input : detect.Inputs())
        count += dynamic_cast<Loader const*>(input.get()) != nullptr ? 1 : 0;
    return count;
}

TEST(DetectInputTest, StartsWithoutLoaders)
{
    auto detect = MakeLoader();
    EXPECT_TRUE(detect->IsEmpty());
    EXPECT_FALSE(detect->HasFormat(FileFormat::Bmp));
    EXPECT_FALSE(detect->HasFormat(FileFormat::None));
}

TEST(DetectInputTest, MakesOneBmpLoaderAndReusesIt)
{
    ScratchFolder folder;
    auto detect = MakeLoader();
    MutableImage const first = detect->Load(WriteBmp(folder, "logo.bmp", 0x0F));
    MutableImage const second = detect->Load(WriteBmp(folder, "logo2.bmp", 0xF0));
    EXPECT_THAT(first.Buffer(), ElementsAre(0x00, 0x00, 0xFF, 0xFF));
    EXPECT_THAT(second.Buffer(), ElementsAre(0xFF, 0xFF, 0x00, 0x00));
    EXPECT_EQ(1u, detect->Inputs().size());
    EXPECT_EQ(1u, CountOf<BmpInput>(*detect));
    EXPECT_FALSE(detect->IsEmpty());
    EXPECT_TRUE(detect->HasFormat(FileFormat::Bmp));
}

TEST(DetectInputTest, APathWithoutExtensionLoadsTheBmpFile)
{
    ScratchFolder folder;
    WriteBmp(folder, "logo.bmp", 0x0F);
    auto detect = MakeLoader();
    EXPECT_THAT(detect->Load(folder.PathOf("logo")).Buffer(), ElementsAre(0x00, 0x00, 0xFF, 0xFF));
}

TEST(DetectInputTest, ADotInAFolderNameIsNoExtension)
{
    ScratchFolder folder;
    WriteBmp(folder, "dir.old/logo.bmp", 0xF0);
    auto detect = MakeLoader();
    EXPECT_THAT(detect->Load(folder.PathOf("dir.old/logo")).Buffer(), ElementsAre(0xFF, 0xFF, 0x00, 0x00));
}

TEST(DetectInputTest, ATrailingDotGetsTheBmpExtensionBehindIt)
{
    ScratchFolder folder;
    WriteBmp(folder, "logo..bmp", 0x0F);
    auto detect = MakeLoader();
    EXPECT_THAT(detect->Load(folder.PathOf("logo.")).Buffer(), ElementsAre(0x00, 0x00, 0xFF, 0xFF));
}

TEST(DetectInputTest, AnUnknownExtensionIsReadAsBmpUnderItsOwnName)
{
    ScratchFolder folder;
    std::string const path = WriteBmp(folder, "logo.xyz", 0x0F);
    auto detect = MakeLoader();
    EXPECT_THAT(detect->Load(path).Buffer(), ElementsAre(0x00, 0x00, 0xFF, 0xFF));
    EXPECT_EQ(1u, CountOf<BmpInput>(*detect));
}

TEST(DetectInputTest, NoPathLooksForTheBmpExtensionAlone)
{
    auto detect = MakeLoader();
    EXPECT_THAT([&] { detect->Load(static_cast<char const*>(nullptr)); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("BmpInput::Load cannot open .bmp")));
    EXPECT_THAT([&] { detect->Load(""); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("BmpInput::Load cannot open .bmp")));
}

TEST(DetectInputTest, ATextFileMakesATextLoader)
{
    ScratchFolder folder;
    std::string const path = folder.Write("a.txt", "X X \n XX \n");
    auto detect = MakeLoader();
    MutableImage const image = detect->Load(path);
    EXPECT_EQ(4, image.Info().Width());
    EXPECT_EQ(2, image.Info().Height());
    EXPECT_EQ(1u, CountOf<AsciiInput>(*detect));
    EXPECT_TRUE(detect->HasFormat(FileFormat::Ascii));
}

TEST(DetectInputTest, APngFileMakesAQtLoader)
{
    Zar::ResourcesLibrary::Image::QtModule::SetSearchPaths({ PACKAGER_QT_MODULE });
    ScratchFolder folder;
    auto detect = MakeLoader();
    MutableImage const image = detect->Load(folder.PathOf("a.png"));
    EXPECT_TRUE(image.IsEmpty());
    EXPECT_EQ(1u, CountOf<QtInput>(*detect));
    EXPECT_TRUE(detect->HasFormat(FileFormat::Png));
}

TEST(DetectInputTest, AFormatWithoutLoaderIsNotSupported)
{
    auto detect = MakeLoader();
    for (std::string path : { "a.pbm", "dir/a.gray", "a.c", "a.bar" }) {
        EXPECT_THAT([&] { detect->Load(path); }, ThrowsMessage<NotSupported>(StrEq("Input::Load " + path)));
    }
    EXPECT_TRUE(detect->IsEmpty());
}

TEST(DetectInputTest, ARawFileGivesAnEmptyImageAndLeavesOneMoreRawLoaderEachTime)
{
    ScratchFolder folder;
    auto detect = MakeLoader();
    for (size_t call = 1; call <= 3; ++call) {
        MutableImage const image = detect->Load(folder.PathOf("a.raw"));
        EXPECT_TRUE(image.IsEmpty());
        EXPECT_EQ(0, image.Info().Width());
        EXPECT_EQ(0, image.Info().Height());
        EXPECT_EQ(call, CountOf<RawInput>(*detect));
    }
    detect->Load(folder.PathOf("a.yuv"));
    EXPECT_EQ(4u, CountOf<RawInput>(*detect));
    EXPECT_FALSE(detect->HasFormat(FileFormat::Raw));
}

TEST(DetectInputTest, FailuresOfTheChosenLoaderPassThrough)
{
    ScratchFolder folder;
    std::string const path = folder.Write("bad.bmp", "BAD");
    auto detect = MakeLoader();
    EXPECT_THAT(
        [&] { detect->Load(path); }, ThrowsMessage<ResourcesLibraryException>(StrEq("source too small 3")));
}

TEST(DetectInputTest, LoadersMadeOnFirstUseGetTheFolderAndTheDefaultName)
{
    ScratchFolder folder;
    auto detect = MakeLoader("bmp/icons");
    detect->Load(WriteBmp(folder, "logo.bmp", 0));
    ASSERT_EQ(1u, detect->Inputs().size());
    EXPECT_EQ("bmp/icons/%04u/%04u.bmp", detect->Inputs()[0]->GetPattern());
}

TEST(DetectInputTest, AppendOfAFormatWithoutLoaderIsUnsupported)
{
    auto detect = MakeLoader();
    EXPECT_THAT([&] { detect->Append(FileFormat::Hpp, "", ImageFormat::Unknown); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Unsupported format Hpp")));
    EXPECT_THAT([&] { detect->Append(FileFormat::Pbm, "x", ImageFormat::Unknown); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Unsupported format Pbm")));
    EXPECT_THAT([&] { detect->Append(static_cast<FileFormat>(17), "", ImageFormat::Unknown); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Unsupported format ")));
    EXPECT_TRUE(detect->IsEmpty());
}

TEST(DetectInputTest, AppendAddsALoaderEveryTime)
{
    auto detect = MakeLoader("bmp/icons");
    detect->Append(FileFormat::Bmp, "", ImageFormat::Unknown);
    detect->Append(FileFormat::Bmp, "other", ImageFormat::Unknown);
    detect->Append(FileFormat::Png, "", ImageFormat::Gray8);
    ASSERT_EQ(3u, detect->Inputs().size());
    EXPECT_EQ("bmp/icons/%04u/%04u.bmp", detect->Inputs()[0]->GetPattern());
    EXPECT_EQ("other/%04u.bmp", detect->Inputs()[1]->GetPattern());
    EXPECT_EQ(ImageFormat::Gray8, detect->Inputs()[2]->GetImageFormat());
    EXPECT_TRUE(detect->HasFormat(FileFormat::Png));
    EXPECT_FALSE(detect->IsEmpty());
}

TEST(DetectInputTest, AnAppendedLoaderServesLaterLoads)
{
    ScratchFolder folder;
    auto detect = MakeLoader();
    detect->Append(FileFormat::Bmp, "", ImageFormat::Unknown);
    detect->Load(WriteBmp(folder, "logo.bmp", 0));
    EXPECT_EQ(1u, detect->Inputs().size());
}

TEST(DetectInputTest, ReadByIndexAndNameGoesThroughTheFolderPattern)
{
    ScratchFolder folder;
    WriteBmp(folder, "icons/logo.bmp", 0x0F);
    auto detect = MakeLoader(folder.PathOf("icons"));
    EXPECT_THAT(detect->Read(5, "logo").Buffer(), ElementsAre(0x00, 0x00, 0xFF, 0xFF));
}

} // namespace
