// The main of a fuzz target in the normal build, in place of libFuzzer's: every file named on the
// command line, and every file of the folders named there (sub-folders included, in path order), is
// passed once to the target's LLVMFuzzerTestOneInput. A target reports a broken invariant by aborting, and in
// the sanitizer build the sanitizers stop at the first fault, so a failing input ends the run with a non-zero
// status; its path is printed before it runs.
//
//   fuzz_replay_bmp_input SEED_FOLDER REGRESSION_FOLDER
//   fuzz_replay_bmp_input build/fuzz/artifacts/bmp_input-crash-0123abcd
//
// A folder that does not exist gives no inputs, since a target has regression inputs only once
// fuzzing found a fault in it. A run that finds no input at all fails: it would check nothing.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> InputsIn(fs::path const& folder)
{
    if (!fs::is_directory(folder))
        return { folder };
    std::vector<fs::path> inputs;
    for (auto const& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            inputs.push_back(entry.path());
    }
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

bool ReadFile(fs::path const& path, std::vector<uint8_t>& bytes)
{
    std::ifstream file(path, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    return !file.bad();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER_OR_FILE...\n", argv[0]);
        return 2;
    }
    size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        fs::path const place = argv[i];
        std::error_code error;
        if (!fs::exists(place, error)) {
            std::fprintf(stderr, "%s: does not exist, no inputs from it\n", argv[i]);
            continue;
        }
        for (fs::path const& input : InputsIn(place)) {
            std::vector<uint8_t> bytes;
            if (!ReadFile(input, bytes)) {
                std::fprintf(stderr, "%s: cannot read\n", input.c_str());
                return 1;
            }
            std::fprintf(stderr, "Running: %s (%zu bytes)\n", input.c_str(), bytes.size());
            // As libFuzzer does, the target gets a heap block of exactly the input's size (never a null
            // pointer), so that the address sanitizer sees a read past its end.
            auto const block = std::make_unique<uint8_t[]>(bytes.size());
            std::copy(bytes.begin(), bytes.end(), block.get());
            LLVMFuzzerTestOneInput(block.get(), bytes.size());
            ++replayed;
        }
    }
    if (replayed == 0) {
        std::fprintf(stderr, "no inputs found: nothing was checked\n");
        return 1;
    }
    std::fprintf(stderr, "replayed %zu inputs\n", replayed);
    return 0;
}
