// Peak memory while loading hostile files: whatever a file declares, loading it may not take more
// than 64 MiB plus four times the file's size. Files that declare huge images (offsets that wrap,
// widths and heights near 2^31, lying image sizes) must fail, or load, within that bound; and where
// the loader refuses a file because an allocation cannot be backed, it refuses before touching the
// memory.
//
// Each load runs in a forked child, which resets its peak resident size (/proc/self/clear_refs),
// loads, and reports how far its peak rose above the resident size it started with. Resident size
// counts only memory that was touched, which is what a machine runs out of; the sanitizer build's
// shadow memory for the touched bytes adds an eighth and stays well inside the bound.

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include "BmpWriter.h"

#include <gtest/gtest.h>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

using TestSupport::BmpWriter;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::Input;

namespace {

constexpr uint64_t kMiB = uint64_t { 1 } << 20;
constexpr uint64_t kFixedAllowance = 64 * kMiB;

struct LoadOutcome {
    bool finished = false; // the child ran to its end (no crash)
    bool threw = false;
    uint64_t peakGrowth = 0; // bytes
    std::string message;
};

uint64_t StatusKiB(char const* field)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    size_t const length = std::strlen(field);
    while (std::getline(status, line)) {
        if (line.compare(0, length, field) == 0)
            return std::strtoull(line.c_str() + length, nullptr, 10);
    }
    return 0;
}

bool ResetPeak()
{
    std::ofstream clear("/proc/self/clear_refs");
    clear << "5";
    clear.flush();
    return static_cast<bool>(clear);
}

// What the child sends back through the pipe: threw flag, growth, message length and text.
[[noreturn]] void ReportAndExit(int pipe, bool threw, uint64_t growth, std::string const& message)
{
    std::string record(1, threw ? '1' : '0');
    record.append(reinterpret_cast<char const*>(&growth), sizeof(growth));
    record += message.substr(0, 400);
    ssize_t const written = write(pipe, record.data(), record.size());
    _exit(written == static_cast<ssize_t>(record.size()) ? 0 : 2);
}

[[noreturn]] void LoadInChild(int pipe, FileFormat format, std::string const& path)
{
    // Memory that the parent freed may still be resident in the C library's heap, and reusing it
    // would not raise the peak. Large blocks are therefore taken fresh from the system, and the
    // free heap is handed back before the peak is reset.
    mallopt(M_MMAP_THRESHOLD, 64 * 1024);
    malloc_trim(0);
    if (!ResetPeak())
        _exit(3);
    uint64_t const before = StatusKiB("VmRSS:");
    bool threw = false;
    std::string message;
    try {
        std::unique_ptr<Input> const input = Input::Create(format, ImageFormat::Unknown, "", "%04u");
        auto const image = input->Load(path);
        message = "loaded " + std::to_string(image.Buffer().size()) + " bytes";
    } catch (std::exception const& e) {
        threw = true;
        message = e.what();
    }
    uint64_t const peak = StatusKiB("VmHWM:");
    ReportAndExit(pipe, threw, (peak > before ? peak - before : 0) * 1024, message);
}

LoadOutcome MeasureLoad(FileFormat format, std::string const& path)
{
    int fds[2];
    if (pipe(fds) != 0)
        return {};
    pid_t const child = fork();
    if (child == 0) {
        close(fds[0]);
        LoadInChild(fds[1], format, path);
    }
    close(fds[1]);
    std::string record;
    char buffer[512];
    for (ssize_t got; (got = read(fds[0], buffer, sizeof(buffer))) > 0;)
        record.append(buffer, static_cast<size_t>(got));
    close(fds[0]);
    int status = 0;
    waitpid(child, &status, 0);

    LoadOutcome outcome;
    outcome.finished = WIFEXITED(status) && WEXITSTATUS(status) == 0 && record.size() >= 1 + sizeof(uint64_t);
    if (!outcome.finished)
        return outcome;
    outcome.threw = record[0] == '1';
    std::memcpy(&outcome.peakGrowth, record.data() + 1, sizeof(uint64_t));
    outcome.message = record.substr(1 + sizeof(uint64_t));
    return outcome;
}

class LoaderMemoryTest : public testing::Test {
protected:
    // Loads the file in a child and checks the bound; returns the outcome for further checks.
    LoadOutcome LoadWithinBound(FileFormat format, std::string const& path)
    {
        uint64_t const size = std::filesystem::file_size(path);
        LoadOutcome const outcome = MeasureLoad(format, path);
        EXPECT_TRUE(outcome.finished) << path << ": the loading child did not finish";
        EXPECT_LT(outcome.peakGrowth, kFixedAllowance + 4 * size)
            << path << ": peak grew by " << outcome.peakGrowth / kMiB << " MiB (" << outcome.message << ")";
        if (std::getenv("LOADER_MEMORY_VERBOSE") != nullptr)
            std::printf("%s: %llu KiB, %s\n", path.c_str(),
                static_cast<unsigned long long>(outcome.peakGrowth / 1024), outcome.message.c_str());
        return outcome;
    }

    LoadOutcome LoadBmpWithinBound(std::string const& name, BmpWriter const& bmp)
    {
        return LoadWithinBound(FileFormat::Bmp, _folder.Write(name, bmp.Bytes()));
    }

    ScratchFolder _folder;
};

// A header that declares an image but whose file ends right after the palette.
BmpWriter DeclaredOnly(int32_t width, int32_t height, uint16_t bits, uint32_t sizeImage)
{
    BmpWriter bmp = bits == 1 ? BmpWriter::Mono(8, {}, BmpWriter::BlackFirst)
                              : BmpWriter::Gray4(8, {}, BmpWriter::BlackFirst);
    bmp.width = width;
    bmp.height = height;
    bmp.sizeImage = sizeImage;
    return bmp;
}

} // namespace

TEST_F(LoaderMemoryTest, MeasuresWhatALoadTouches)
{
    // A real 8 MiB image must show up in the measure, or the other tests prove nothing.
    BmpWriter bmp = DeclaredOnly(4096, 4096, 4, 2048 * 4096);
    bmp.trailer.assign(2048 * 4096, 0x11);
    LoadOutcome const outcome = LoadBmpWithinBound("real.bmp", bmp);
    EXPECT_FALSE(outcome.threw) << outcome.message;
    EXPECT_GE(outcome.peakGrowth, 8 * kMiB);
}

TEST_F(LoaderMemoryTest, OffsetBelowFourteenFailsWithoutTouchingTheBlock)
{
    // bfOffBits - 14 wraps to a block of almost 4 GiB; the file cannot back it.
    for (uint32_t offBits : { 0u, 1u, 13u }) {
        BmpWriter bmp = BmpWriter::Mono(8, { { 0xFF } }, BmpWriter::WhiteFirst);
        bmp.offBits = offBits;
        LoadOutcome const outcome = LoadBmpWithinBound("offset" + std::to_string(offBits) + ".bmp", bmp);
        EXPECT_TRUE(outcome.threw) << offBits << ": " << outcome.message;
        EXPECT_LT(outcome.peakGrowth, 16 * kMiB) << offBits;
    }
}

TEST_F(LoaderMemoryTest, WidthNearTwoToTheThirtyFirstFails)
{
    for (uint16_t bits : { uint16_t { 1 }, uint16_t { 4 } }) {
        LoadOutcome const outcome = LoadBmpWithinBound(
            "wide" + std::to_string(bits) + ".bmp", DeclaredOnly(0x7FFFFFF0, 2, bits, 0xFFFFFFFF));
        EXPECT_TRUE(outcome.threw) << outcome.message;
    }
}

TEST_F(LoaderMemoryTest, HeightNearTwoToTheThirtyFirstFails)
{
    for (int32_t height : { 0x7FFFFFFF, -0x7FFFFFFF }) {
        LoadOutcome const outcome = LoadBmpWithinBound("tall.bmp", DeclaredOnly(32, height, 1, 0xFFFFFFFF));
        EXPECT_TRUE(outcome.threw) << height << ": " << outcome.message;
    }
}

TEST_F(LoaderMemoryTest, WidthAndHeightNearTwoToTheThirtyFirstFail)
{
    LoadOutcome const outcome
        = LoadBmpWithinBound("huge.bmp", DeclaredOnly(0x7FFFFFFF, 0x7FFFFFFF, 4, 0xFFFFFFFF));
    EXPECT_TRUE(outcome.threw) << outcome.message;
}

TEST_F(LoaderMemoryTest, LyingImageSizeWithoutThePixelsFails)
{
    // A plausible screen whose image size claims 2 GiB and whose pixels are missing.
    LoadOutcome const outcome = LoadBmpWithinBound("lying.bmp", DeclaredOnly(256, 64, 4, 0x7FFFFFFF));
    EXPECT_TRUE(outcome.threw) << outcome.message;
}

TEST_F(LoaderMemoryTest, FourBitFileDeclaringTheLargestSixteenBitImageFails)
{
    // 65535 x 65535 at 4 bits: exactly the 2 GiB of pixel data that the image size declares, of
    // which the file holds none.
    LoadOutcome const outcome
        = LoadBmpWithinBound("65535.bmp", DeclaredOnly(65535, 65535, 4, 32768u * 65535u));
    EXPECT_TRUE(outcome.threw) << outcome.message;
}

TEST_F(LoaderMemoryTest, NarrowTallImagesStayWithinTheBound)
{
    // Lines of fewer than 8 pixels at 1 bit, or of 1 pixel at 4 bits, have no source bytes, so a
    // file of a hundred bytes can declare tens of millions of them.
    LoadWithinBound(FileFormat::Bmp, _folder.Write("narrow1.bmp", DeclaredOnly(7, 1 << 26, 1, 0).Bytes()));
    LoadWithinBound(FileFormat::Bmp, _folder.Write("narrow4.bmp", DeclaredOnly(1, 1 << 26, 4, 0).Bytes()));
    LoadWithinBound(
        FileFormat::Bmp, _folder.Write("narrowtop.bmp", DeclaredOnly(7, -(1 << 26), 1, 0).Bytes()));
}

TEST_F(LoaderMemoryTest, WideImageWithoutLinesStaysWithinTheBound)
{
    // Found by fuzzing: a line of 197 MB declared by a 94-byte file, in an image of no lines.
    LoadOutcome const outcome = LoadBmpWithinBound("nolines.bmp", DeclaredOnly(0x5E000010, 0, 1, 32));
    EXPECT_FALSE(outcome.threw) << outcome.message;
}

TEST_F(LoaderMemoryTest, MonochromeFileGrowsFourTimesAtMost)
{
    // Every source byte becomes four image bytes: a 2 MiB monochrome file loads into 8 MiB.
    BmpWriter bmp = DeclaredOnly(4096, 4096, 1, 512 * 4096);
    bmp.trailer.assign(512 * 4096, 0xA5);
    LoadOutcome const outcome = LoadBmpWithinBound("mono.bmp", bmp);
    EXPECT_FALSE(outcome.threw) << outcome.message;
}

TEST_F(LoaderMemoryTest, LargeMonochromeFileStaysWithinTheBound)
{
    // 96 MiB of 1-bit pixel data decode into 384 MiB: the bound leaves room for the decoded image
    // and 64 MiB more, not for a second copy of the whole pixel data beside it.
    BmpWriter bmp = DeclaredOnly(32768, 24576, 1, 4096u * 24576u);
    bmp.trailer.assign(4096u * 24576u, 0x5A);
    LoadOutcome const outcome = LoadBmpWithinBound("large-mono.bmp", bmp);
    EXPECT_FALSE(outcome.threw) << outcome.message;
}

TEST_F(LoaderMemoryTest, TextImageOfNarrowRowsStaysWithinTheBound)
{
    // One lit pixel per row: each two-byte row becomes a four-byte image line. The height is a
    // 16-bit count, so 65535 rows are the most a text image has.
    std::string text;
    for (int row = 0; row < 65535; ++row)
        text += "X\n";
    std::string const path = _folder.Write("narrow.txt", text);
    LoadOutcome const outcome = LoadWithinBound(FileFormat::Ascii, path);
    EXPECT_EQ(outcome.message, "loaded " + std::to_string(65535 * 4) + " bytes");
}

TEST_F(LoaderMemoryTest, ShortRawFrameStaysWithinTheBound)
{
    // The raw loader's frame has a fixed size of 1536000 bytes, whatever the file holds.
    std::string const path = _folder.Write("short.raw", "frame");
    LoadWithinBound(FileFormat::Raw, path);
}
