#include "BenchCheck.h"
#include "BenchTree.h"

#include "Zar/Lt/Core/Version32.h"
#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>

// The packager's build driver, compiled into this program from packager.cpp with main renamed.
void Build(Zar::Lt::Core::Version32 const& version, std::string const& root, std::string const& outputFolder,
    int sector, Zar::ResourcesLibrary::Image::FileFormat format);

namespace {

constexpr int kFirstSector = 12;

// Swallows what the build prints (the summary and CRC lines) while it is timed.
class NullBuffer : public std::streambuf {
protected:
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(char const*, std::streamsize count) override { return count; }
};

// Standard output goes to the given buffer for the lifetime of the object.
class RedirectedStdout {
public:
    explicit RedirectedStdout(std::streambuf* buffer)
        : _previous(std::cout.rdbuf(buffer))
    {
    }
    ~RedirectedStdout() { std::cout.rdbuf(_previous); }

    RedirectedStdout(RedirectedStdout const&) = delete;
    RedirectedStdout& operator=(RedirectedStdout const&) = delete;

private:
    std::streambuf* _previous;
};

void RunBuild(Zar::Bench::BenchTree const& tree)
{
    Build(Zar::Lt::Core::Version32(0, 6, 0, 0), tree.Root(), tree.Output(), kFirstSector,
        Zar::ResourcesLibrary::Image::FileFormat::None);
}

// The pack holds the header, then the icon and screen sectors that the header maps (the tree's
// images are the usual sizes, so the file has just those), and the summary counts every icon.
bool BuildsThePack(Zar::Bench::BenchTree const& tree, int icons)
{
    using Zar::ResourcesLibrary::Pack::PackFormat;
    std::ostringstream printed;
    try {
        RedirectedStdout redirected(printed.rdbuf());
        RunBuild(tree);
    } catch (...) {
        return false;
    }
    auto const expected = PackFormat::kSectorSize
        * (1 + PackFormat::MappedIconSectors(static_cast<uint64_t>(icons))
            + PackFormat::MappedScreenSectors(Zar::Bench::BenchTree::kScreens));
    std::error_code error;
    auto const size = std::filesystem::file_size(tree.Output() + "oled.pack", error);
    return !error && size == expected
        && printed.str().find(", " + std::to_string(icons) + " icons at sector "
               + std::to_string(kFirstSector) + ", " + std::to_string(Zar::Bench::BenchTree::kScreens)
               + " screens")
        != std::string::npos;
}

// The whole clean build of a tree of so many icons and four screens, in-process: the packager's
// work without the start-up of a process. Set beside the run of the same tree with no icons, it gives the
// time each icon adds.
void BuildTree(benchmark::State& state)
{
    int const icons = static_cast<int>(state.range(0));
    Zar::Bench::BenchTree const tree(icons);
    if (!Zar::Bench::Check(state, BuildsThePack(tree, icons), "the build does not make the expected pack"))
        return;
    NullBuffer discard;
    RedirectedStdout redirected(&discard);
    for (auto _ : state) {
        // Rewriting the outputs of the build before would be slower on ext4, whose close starts the
        // write-back of a file truncated after it held data; that cost does not depend on the icons.
        state.PauseTiming();
        tree.RemoveOutputs();
        state.ResumeTiming();
        RunBuild(tree);
    }
    state.counters["icons"] = icons;
}
// Timed by the clock rather than by CPU time: a build waits on the file system, and that is part of
// its cost.
BENCHMARK(BuildTree)
    ->Arg(0)
    ->Arg(10)
    ->Arg(100)
    ->Arg(Zar::Bench::BenchTree::MaxIcons())
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

} // namespace
