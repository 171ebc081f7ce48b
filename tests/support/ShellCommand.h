#pragma once

// Runs commands through the shell for the tests that drive the built tools, a compiler or Python as
// a user would, and quotes what goes into such a command line.
//
//   CommandResult const run = RunShellCommand(ShellProgram(tool) + " verify oled.pack", folder);
//   EXPECT_EQ(run.exitCode, 0) << run.output;

#include <array>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>

#include <sys/wait.h>

// The words that start a program of this build, empty unless the build is for another machine.
#ifndef PACKAGER_TEST_EMULATOR
#define PACKAGER_TEST_EMULATOR ""
#endif

namespace TestSupport {

struct CommandResult {
    int exitCode = -1; // -1 when the command did not exit by itself
    std::string output; // standard output and standard error together, in the order written
};

// The text in single quotes, with every single quote in it closed, escaped and opened again, so that
// the shell takes it as one word whatever it holds.
inline std::string ShellQuoted(std::string const& text)
{
    std::string quoted = "'";
    for (char const c : text) {
        if (c == '\'')
            quoted += "'\\''";
        else
            quoted += c;
    }
    quoted += '\'';
    return quoted;
}

// The start of a command line that runs a program of this build: its quoted path, after the words of
// the emulator when the build is for another machine (qemu-user runs it there, with or without a
// binfmt handler on the build machine). A program the tests compile for the target is started the
// same way.
// The emulator's words, each quoted and followed by a space: what goes before a program of this
// build in a command line. Empty unless the build is for another machine.
inline std::string EmulatorPrefix()
{
    std::string line;
    std::istringstream words(PACKAGER_TEST_EMULATOR);
    for (std::string word; words >> word;)
        line += ShellQuoted(word) + " ";
    return line;
}

inline std::string ShellProgram(std::string const& path) { return EmulatorPrefix() + ShellQuoted(path); }

// Runs the command in a subshell, in the given folder if there is one. Redirections inside the
// command still apply to it: what it does not redirect itself is gathered in the result.
inline CommandResult RunShellCommand(std::string const& command, std::filesystem::path const& folder = {})
{
    std::string line = "(";
    if (!folder.empty()) {
        line += "cd ";
        line += ShellQuoted(folder.string());
        line += " && ";
    }
    line += command;
    line += ") 2>&1";
    FILE* pipe = popen(line.c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("cannot run " + command);
    CommandResult result;
    std::array<char, 4096> buffer {};
    while (std::size_t const got = std::fread(buffer.data(), 1, buffer.size(), pipe))
        result.output.append(buffer.data(), got);
    int const status = pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

} // namespace TestSupport
