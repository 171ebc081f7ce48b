#pragma once

#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Runs a program as a child process from an argument vector, never through a shell, in a given
// folder, with its standard output and standard error going to one file, and waits for it.
class ChildProcess {
public:
    struct Result {
        bool _started = false;
        // The exit status when the child exited; -1 when a signal ended it.
        int _exitCode = -1;
        // The signal that ended it, 0 when it exited.
        int _signal = 0;
        // Why it did not start, or how it ended when not by exit.
        std::string _problem;

        bool Succeeded() const { return _started && _exitCode == 0; }
    };

    // arguments[0] is the program: a path when it holds a '/', otherwise looked up on PATH.
    static Result Run(
        std::vector<std::string> const& arguments, std::string const& folder, std::string const& outputFile);

    // The words of the environment variable (split on spaces) put before a program, so that a
    // cross-built program runs under an emulator such as qemu-user; nothing when it is unset or empty.
    static constexpr char kEmulatorVariable[] = "PACKINSPECT_EMULATOR";
    static std::vector<std::string> EmulatorWords();

    // The folder of the running executable, from /proc/self/exe; empty when unknown.
    static std::string ExecutableFolder();
    // A program found beside the running executable first, then in the folders of PATH; empty when
    // neither has it.
    static std::string FindProgram(std::string const& name);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
