#include "ChildProcess.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

bool IsExecutableFile(std::filesystem::path const& path)
{
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && access(path.c_str(), X_OK) == 0;
}

// The file that starts the program: a path as it is given, a name looked up in the folders of PATH;
// otherwise the error that exec would give. Found here rather than by posix_spawnp, so that a program
// that is not there never counts as started, also where the spawn cannot report a failed exec (under
// qemu-user, which runs the child as a plain fork).
int Locate(std::string const& program, std::string& file)
{
    if (program.find('/') != std::string::npos) {
        file = program;
        return access(program.c_str(), X_OK) == 0 ? 0 : errno;
    }
    char const* const path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        auto const candidate = std::filesystem::path(folder.empty() ? "." : folder) / program;
        if (IsExecutableFile(candidate)) {
            file = candidate.string();
            return 0;
        }
    }
    return ENOENT;
}

// The file actions of the child: into the folder, standard output and error into the file.
class FileActions {
public:
    FileActions() { _error = posix_spawn_file_actions_init(&_actions); }
    ~FileActions()
    {
        if (_error == 0)
            posix_spawn_file_actions_destroy(&_actions);
    }
    FileActions(FileActions const&) = delete;
    FileActions& operator=(FileActions const&) = delete;

    int Prepare(std::string const& folder, std::string const& outputFile)
    {
        if (_error != 0)
            return _error;
        if (!folder.empty())
            if (int const error = posix_spawn_file_actions_addchdir_np(&_actions, folder.c_str()))
                return error;
        if (int const error = posix_spawn_file_actions_addopen(
                &_actions, STDOUT_FILENO, outputFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644))
            return error;
        return posix_spawn_file_actions_adddup2(&_actions, STDOUT_FILENO, STDERR_FILENO);
    }

    posix_spawn_file_actions_t const* Get() const { return &_actions; }

private:
    posix_spawn_file_actions_t _actions {};
    int _error = 0;
};

} // namespace

ChildProcess::Result ChildProcess::Run(
    std::vector<std::string> const& arguments, std::string const& folder, std::string const& outputFile)
{
    Result result;
    if (arguments.empty()) {
        result._problem = "no program to run";
        return result;
    }
    // The output file is opened by the child after its chdir, so a relative path would move with it.
    std::string const output = std::filesystem::absolute(outputFile).string();
    FileActions actions;
    if (int const error = actions.Prepare(folder, output)) {
        result._problem = std::strerror(error);
        return result;
    }
    std::vector<char*> argv;
    for (auto const& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    std::string file;
    int error = Locate(arguments[0], file);
    pid_t child = 0;
    if (error == 0)
        error = posix_spawn(&child, file.c_str(), actions.Get(), nullptr, argv.data(), environ);
    if (error != 0) {
        result._problem = "cannot run " + arguments[0] + ": " + std::strerror(error);
        return result;
    }
    result._started = true;
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR) {
            result._problem = std::string("cannot wait for ") + arguments[0] + ": " + std::strerror(errno);
            return result;
        }
    if (WIFEXITED(status)) {
        result._exitCode = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        result._signal = WTERMSIG(status);
        result._problem = arguments[0] + " was ended by signal " + std::to_string(result._signal);
    }
    return result;
}

std::vector<std::string> ChildProcess::EmulatorWords()
{
    std::vector<std::string> words;
    char const* value = std::getenv(kEmulatorVariable);
    if (!value)
        return words;
    std::istringstream stream(value);
    for (std::string word; std::getline(stream, word, ' ');)
        if (!word.empty())
            words.push_back(word);
    return words;
}

std::string ChildProcess::ExecutableFolder()
{
    std::error_code error;
    auto const executable = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : executable.parent_path().string();
}

std::string ChildProcess::FindProgram(std::string const& name)
{
    if (std::string const folder = ExecutableFolder(); !folder.empty()) {
        auto const beside = std::filesystem::path(folder) / name;
        if (IsExecutableFile(beside))
            return beside.string();
    }
    char const* path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        auto const candidate = std::filesystem::path(folder.empty() ? "." : folder) / name;
        if (IsExecutableFile(candidate))
            return candidate.string();
    }
    return {};
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
