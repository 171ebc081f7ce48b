#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/codec/QtInput.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::ThrowsMessage;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::QtModule;

namespace {

// The text as a regular expression that matches it literally.
std::string Escaped(std::string const& text)
{
    std::string escaped;
    for (char const c : text) {
        if (std::string_view("\\^$.|?*+()[]{}").find(c) != std::string_view::npos)
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

class QtModuleTest : public testing::Test {
protected:
    void TearDown() override { QtModule::SetSearchPaths({ PACKAGER_QT_MODULE }); }
};

} // namespace

TEST_F(QtModuleTest, IsLookedForBesideTheExecutableThenInTheInstalledTree)
{
    std::vector<std::string> const paths = QtModule::CandidatePaths("/opt/p/bin");
    ASSERT_EQ(3u, paths.size());
    EXPECT_EQ("/opt/p/bin/zar_qt_input.so", paths[0]);
    EXPECT_THAT(paths[1], testing::StartsWith("/opt/p/bin/../"));
    EXPECT_THAT(paths[1], testing::EndsWith("/packager/zar_qt_input.so"));
    EXPECT_THAT(paths[2], testing::StartsWith("/"));
    EXPECT_THAT(paths[2], testing::EndsWith("/packager/zar_qt_input.so"));
}

TEST_F(QtModuleTest, TheFolderOfTheEnvironmentIsTheOnlyOneSearched)
{
    EXPECT_EQ(
        std::vector<std::string> { "/m/zar_qt_input.so" }, QtModule::CandidatePaths("/opt/p/bin", "/m"));
    EXPECT_EQ(QtModule::CandidatePaths("/opt/p/bin"), QtModule::CandidatePaths("/opt/p/bin", ""));
    EXPECT_EQ(3u, QtModule::CandidatePaths("/opt/p/bin", nullptr).size());
}

TEST_F(QtModuleTest, OpensTheModuleOfThisBuild)
{
    QtModule::SetSearchPaths({ PACKAGER_QT_MODULE });
    ZarQtImageCodec const& codec = QtModule::Codec();
    EXPECT_NE(nullptr, codec.load);
    EXPECT_NE(nullptr, codec.release);
    EXPECT_EQ(&codec, &QtModule::Codec());
}

TEST_F(QtModuleTest, AMissingModuleIsNamedWithEveryPathTriedAndWhy)
{
    ScratchFolder folder;
    std::string const first = folder.PathOf("zar_qt_input.so");
    std::string const second = folder.PathOf("lib/zar_qt_input.so");
    QtModule::SetSearchPaths({ first, second });
    EXPECT_THAT([] { QtModule::Codec(); },
        ThrowsMessage<ResourcesLibraryException>(
            AllOf(HasSubstr("cannot load the Qt image module zar_qt_input.so: tried "),
                HasSubstr(first + " ("), HasSubstr("; " + second + " ("),
                ContainsRegex(Escaped(second) + " \\(" + Escaped(second) + ": .+\\)"))));
}

TEST_F(QtModuleTest, AFileThatIsNoModuleIsNamedWithTheLoadersReason)
{
    ScratchFolder folder;
    std::string const path = folder.Write("zar_qt_input.so", std::string(4096, 'x'));
    QtModule::SetSearchPaths({ path });
    EXPECT_THAT([] { QtModule::Codec(); },
        ThrowsMessage<ResourcesLibraryException>(
            ContainsRegex("tried " + Escaped(path) + " \\(" + Escaped(path) + ": .+\\)")));
}

TEST_F(QtModuleTest, AModuleWithoutTheEntryPointIsNamedWithTheMissingSymbol)
{
    QtModule::SetSearchPaths({ STAND_IN_QT_MODULE_WITHOUT_ENTRY });
    EXPECT_THAT([] { QtModule::Codec(); },
        ThrowsMessage<ResourcesLibraryException>(
            AllOf(HasSubstr(std::string("tried ") + STAND_IN_QT_MODULE_WITHOUT_ENTRY + " ("
                      + STAND_IN_QT_MODULE_WITHOUT_ENTRY + ": "),
                HasSubstr("zar_qt_image_codec"))));
    // Refused modules are closed: the next attempt fails the same way, and a good one still opens.
    EXPECT_THAT(
        [] { QtModule::Codec(); }, ThrowsMessage<ResourcesLibraryException>(HasSubstr("zar_qt_image_codec")));
    QtModule::SetSearchPaths({ STAND_IN_QT_MODULE_WITHOUT_ENTRY, PACKAGER_QT_MODULE });
    EXPECT_NE(nullptr, QtModule::Codec().load);
}

TEST_F(QtModuleTest, AModuleWhoseEntryPointGivesNoCodecIsRefusedWithTheReason)
{
    QtModule::SetSearchPaths({ STAND_IN_QT_MODULE_WITHOUT_CODEC });
    EXPECT_THAT([] { QtModule::Codec(); },
        ThrowsMessage<ResourcesLibraryException>(
            HasSubstr(std::string("tried ") + STAND_IN_QT_MODULE_WITHOUT_CODEC + " ("
                + STAND_IN_QT_MODULE_WITHOUT_CODEC + ": its zar_qt_image_codec() gave no codec)")));
}

TEST_F(QtModuleTest, AModuleOfAnotherBuildIsRefusedWithBothVersions)
{
    QtModule::SetSearchPaths({ STAND_IN_QT_MODULE_OTHER_VERSION });
    std::string const ours = std::to_string(ZAR_QT_IMAGE_CODEC_VERSION);
    std::string const theirs = std::to_string(ZAR_QT_IMAGE_CODEC_VERSION + 1);
    EXPECT_THAT([] { QtModule::Codec(); },
        ThrowsMessage<ResourcesLibraryException>(
            HasSubstr(std::string("tried ") + STAND_IN_QT_MODULE_OTHER_VERSION + " ("
                + STAND_IN_QT_MODULE_OTHER_VERSION + ": its codec has version " + theirs
                + ", this build needs " + ours + " (a module of another build))")));
}

TEST_F(QtModuleTest, AQtFileFailsWithTheReasonWhenTheModuleIsMissing)
{
    ScratchFolder folder;
    std::string const path = folder.PathOf("zar_qt_input.so");
    QtModule::SetSearchPaths({ path });
    QtInput loader(FileFormat::Png, ImageFormat::Unknown, "%04u.png", "");
    EXPECT_THAT([&] { loader.Load(folder.PathOf("a.png")); },
        ThrowsMessage<ResourcesLibraryException>(
            HasSubstr("cannot load the Qt image module zar_qt_input.so: tried " + path)));
}

TEST_F(QtModuleTest, AModuleFoundLaterIsStillOpened)
{
    ScratchFolder folder;
    QtModule::SetSearchPaths({ folder.PathOf("zar_qt_input.so"), PACKAGER_QT_MODULE });
    EXPECT_NE(nullptr, QtModule::Codec().load);
}
