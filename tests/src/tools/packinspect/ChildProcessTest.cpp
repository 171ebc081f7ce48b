#include "ChildProcess.h"

#include "FileContents.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

using testing::HasSubstr;
using TestSupport::ReadText;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Tools::Inspect::ChildProcess;

namespace {

// Sets an environment variable for the scope of a test and restores it.
class ScopedVariable {
public:
    ScopedVariable(char const* name, char const* value)
        : _name(name)
    {
        if (char const* old = std::getenv(name))
            _old = old;
        if (value)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }
    ~ScopedVariable()
    {
        if (_old)
            setenv(_name, _old->c_str(), 1);
        else
            unsetenv(_name);
    }
    ScopedVariable(ScopedVariable const&) = delete;
    ScopedVariable& operator=(ScopedVariable const&) = delete;

private:
    char const* _name;
    std::optional<std::string> _old;
};

} // namespace

TEST(ChildProcessTest, RunsInTheFolderWithTheArgumentsAsGiven)
{
    ScratchFolder folder;
    // The argument holds blanks and a quote: no shell splits or reads it.
    auto const result = ChildProcess::Run({ "sh", "-c", "pwd; echo \"$0\" >&2; exit 3", "a 'b' c" },
        folder.Path().string(), folder.PathOf("out.txt"));
    EXPECT_TRUE(result._started);
    EXPECT_EQ(3, result._exitCode);
    EXPECT_FALSE(result.Succeeded());
    EXPECT_EQ(std::filesystem::canonical(folder.Path()).string() + "\na 'b' c\n",
        ReadText(folder.PathOf("out.txt")));
}

TEST(ChildProcessTest, AProgramThatIsNotThereDoesNotStart)
{
    ScratchFolder folder;
    auto const result = ChildProcess::Run({ folder.PathOf("nothing") }, "", folder.PathOf("out.txt"));
    EXPECT_FALSE(result._started);
    EXPECT_EQ("cannot run " + folder.PathOf("nothing") + ": No such file or directory", result._problem);
    EXPECT_EQ("no program to run", ChildProcess::Run({}, "", folder.PathOf("out.txt"))._problem);
}

TEST(ChildProcessTest, AFolderThatIsNotThereDoesNotStart)
{
    ScratchFolder folder;
    auto const result = ChildProcess::Run({ "true" }, folder.PathOf("missing"), folder.PathOf("out.txt"));
    EXPECT_FALSE(result.Succeeded());
}

TEST(ChildProcessTest, ASignalIsReported)
{
    ScratchFolder folder;
    auto const result = ChildProcess::Run({ "sh", "-c", "kill -TERM $$" }, "", folder.PathOf("out.txt"));
    EXPECT_TRUE(result._started);
    EXPECT_EQ(-1, result._exitCode);
    EXPECT_EQ(SIGTERM, result._signal);
    EXPECT_EQ("sh was ended by signal " + std::to_string(SIGTERM), result._problem);
}

TEST(ChildProcessTest, TheEmulatorsWordsAreSplitOnSpaces)
{
    {
        ScopedVariable const emulator(
            ChildProcess::kEmulatorVariable, "qemu-arm  -L /usr/arm-linux-gnueabihf");
        EXPECT_EQ((std::vector<std::string> { "qemu-arm", "-L", "/usr/arm-linux-gnueabihf" }),
            ChildProcess::EmulatorWords());
    }
    ScopedVariable const unset(ChildProcess::kEmulatorVariable, nullptr);
    EXPECT_TRUE(ChildProcess::EmulatorWords().empty());
}

TEST(ChildProcessTest, FindsAProgramBesideTheExecutableThenOnThePath)
{
    ScratchFolder folder;
    folder.Write("tool", "#!/bin/sh\n");
    std::filesystem::permissions(folder.PathOf("tool"), std::filesystem::perms::owner_all);
    ScopedVariable const path("PATH", (folder.Path().string() + ":/nonexistent").c_str());
    EXPECT_EQ(folder.PathOf("tool"), ChildProcess::FindProgram("tool"));
    EXPECT_EQ("", ChildProcess::FindProgram("no-such-tool"));
    // The test executable's own folder comes first.
    EXPECT_FALSE(ChildProcess::ExecutableFolder().empty());
    EXPECT_EQ(ChildProcess::ExecutableFolder() + "/packinspect_tests",
        ChildProcess::FindProgram("packinspect_tests"));
}
