#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/codec/QtInput.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::QtModule;

namespace {

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
        ThrowsMessage<ResourcesLibraryException>(AllOf(
            HasSubstr("cannot load the Qt image module zar_qt_input.so: tried "), HasSubstr(first + " ("),
            HasSubstr("; " + second + " ("), HasSubstr("No such file or directory)"))));
}

TEST_F(QtModuleTest, AFileThatIsNoModuleIsNamedWithTheLoadersReason)
{
    ScratchFolder folder;
    std::string const path = folder.Write("zar_qt_input.so", std::string(4096, 'x'));
    QtModule::SetSearchPaths({ path });
    EXPECT_THAT([] { QtModule::Codec(); },
        ThrowsMessage<ResourcesLibraryException>(
            AllOf(HasSubstr("tried " + path + " ("), HasSubstr("invalid ELF header"))));
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
