// Arbitrary text as call-stack lines: one line filled into a Symbol, and a whole text split into
// lines and turned into symbols. The only failure named is the signature precondition; every view
// of a filled symbol must lie inside the line or inside the symbol's own signature.

#include "FuzzCheck.h"

#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/Lt/Exceptions/StackInfo.h"
#include "Zar/Lt/Exceptions/Symbol.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using Zar::Lt::Exceptions::PreCondition;
using Zar::Lt::Exceptions::StackInfo;
using Zar::Lt::Exceptions::Symbol;

namespace {

bool Inside(std::string_view part, std::string_view whole)
{
    if (part.empty())
        return true;
    std::less_equal<char const*> const notAfter;
    return notAfter(whole.data(), part.data())
        && notAfter(part.data() + part.size(), whole.data() + whole.size());
}

void CheckViews(Symbol const& symbol, std::string_view line)
{
    ZAR_FUZZ_CHECK(Inside(symbol.LibraryFullPath(), line));
    ZAR_FUZZ_CHECK(Inside(symbol.LibraryName(), line));
    ZAR_FUZZ_CHECK(Inside(symbol.Mangled(), line));
    std::string_view const signature = symbol.Signature();
    ZAR_FUZZ_CHECK(Inside(symbol.FullPath(), signature));
    ZAR_FUZZ_CHECK(Inside(symbol.Path(), signature));
    ZAR_FUZZ_CHECK(Inside(symbol.Namespace(), signature));
    ZAR_FUZZ_CHECK(Inside(symbol.Class(), signature));
    ZAR_FUZZ_CHECK(Inside(symbol.Name(), signature));
    ZAR_FUZZ_CHECK(Inside(symbol.Parameters(), signature));
}

bool IsSignaturePrecondition(PreCondition const& e)
{
    return std::strcmp(e.what(), "PreCondition end != string::npos") == 0;
}

void FillOneLine(std::string_view line)
{
    Symbol symbol;
    try {
        symbol.Fill(line);
    } catch (PreCondition const& e) {
        ZAR_FUZZ_CHECK(IsSignaturePrecondition(e));
        return;
    }
    CheckViews(symbol, line);
    // A moved symbol keeps views into its own signature, not into the one it came from.
    Symbol const moved(std::move(symbol));
    CheckViews(moved, line);
}

void SymbolsOfText(std::string const& text, int skip, std::string const& function)
{
    std::vector<std::string> const frames = StackInfo::Get(text);
    try {
        std::vector<Symbol> const symbols = StackInfo::Symbols(frames, skip);
        ZAR_FUZZ_CHECK(symbols.size() == frames.size() - static_cast<size_t>(skip));
    } catch (PreCondition const& e) {
        ZAR_FUZZ_CHECK(IsSignaturePrecondition(e));
    }
    try {
        int const callee = StackInfo::Callee(function, frames);
        ZAR_FUZZ_CHECK(callee == -1 || (callee >= 1 && static_cast<size_t>(callee) <= frames.size()));
    } catch (PreCondition const& e) {
        ZAR_FUZZ_CHECK(IsSignaturePrecondition(e));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    std::string const function = provider.ConsumeRandomLengthString(64);
    std::string const text = provider.ConsumeRemainingBytesAsString();

    ZarFuzz::ExactCopy const line(reinterpret_cast<uint8_t const*>(text.data()), text.size());
    FillOneLine(line.View());

    // The frames to skip stay within the list: the caller passes a position of its own list.
    size_t const lines = StackInfo::Get(text).size();
    SymbolsOfText(text, static_cast<int>(size % (lines + 1)), function);
    return 0;
}
