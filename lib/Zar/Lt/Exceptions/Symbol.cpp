#include "Zar/Lt/Exceptions/Symbol.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/Lt/Exceptions/TypeInfo.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <utility>

namespace Zar::Lt::Exceptions {

using std::string;

namespace {

// The failure's function text, fixed so that it does not depend on the compiler's spelling.
constexpr char kParseSignatureFunction[] = "void Zar::Lt::Exceptions::Symbol::ParseSignature()";

// The text between `from` and `to`, or nothing when the range is empty or reversed.
std::string_view Between(
    std::string_view text, std::string_view::size_type from, std::string_view::size_type to)
{
    if (from >= to || from >= text.size())
        return {};
    return text.substr(from, to - from);
}

// The offsets and addresses of a stack line are written with a "0x" prefix after their marker.
constexpr std::string_view::size_type kMarkerAndPrefix = 3;

// Read as 64 bits on every machine, as long is on x86-64, then cut: an offset beyond 31 bits wraps
// negative instead of saturating where long is 32 bits.
int32_t ReadOffset(std::string_view digits)
{
    string const text(digits);
    return static_cast<int32_t>(std::strtoll(text.c_str(), nullptr, 16));
}

uint64_t ReadAddress(std::string_view digits)
{
    string const text(digits);
    return static_cast<uint64_t>(strtoq(text.c_str(), nullptr, 16));
}

bool IsInside(std::string_view view, string const& owner)
{
    std::less_equal<char const*> const notAfter;
    return view.data() != nullptr && notAfter(owner.data(), view.data())
        && notAfter(view.data() + view.size(), owner.data() + owner.size());
}

// The same range of characters, relative to where the owner's characters now are.
std::string_view Rebase(std::string_view view, char const* oldBase, bool inside, string const& owner)
{
    if (!inside)
        return view;
    return std::string_view(owner.data() + (view.data() - oldBase), view.size());
}

} // namespace

Symbol::Symbol(std::string_view line) { Fill(line); }

Symbol::Symbol(Symbol&& other) noexcept { TakeOver(other); }

Symbol& Symbol::operator=(Symbol&& other) noexcept
{
    if (this != &other)
        TakeOver(other);
    return *this;
}

void Symbol::TakeOver(Symbol& other) noexcept
{
    std::string_view* const lineViews[] = { &other._libraryFullPath, &other._libraryName, &other._mangled };
    std::string_view* const signatureViews[] = { &other._fullPath, &other._path, &other._namespace,
        &other._class, &other._name, &other._parameters };

    // Which views refer to the other symbol's own strings must be known before those strings move.
    bool lineInside[std::size(lineViews)];
    for (size_t i = 0; i < std::size(lineViews); ++i)
        lineInside[i] = IsInside(*lineViews[i], other._line);
    bool signatureInside[std::size(signatureViews)];
    for (size_t i = 0; i < std::size(signatureViews); ++i)
        signatureInside[i] = IsInside(*signatureViews[i], other._signature);
    char const* const oldLine = other._line.data();
    char const* const oldSignature = other._signature.data();

    _line = std::move(other._line);
    _signature = std::move(other._signature);
    _libraryFullPath = Rebase(other._libraryFullPath, oldLine, lineInside[0], _line);
    _libraryName = Rebase(other._libraryName, oldLine, lineInside[1], _line);
    _mangled = Rebase(other._mangled, oldLine, lineInside[2], _line);
    _fullPath = Rebase(other._fullPath, oldSignature, signatureInside[0], _signature);
    _path = Rebase(other._path, oldSignature, signatureInside[1], _signature);
    _namespace = Rebase(other._namespace, oldSignature, signatureInside[2], _signature);
    _class = Rebase(other._class, oldSignature, signatureInside[3], _signature);
    _name = Rebase(other._name, oldSignature, signatureInside[4], _signature);
    _parameters = Rebase(other._parameters, oldSignature, signatureInside[5], _signature);
    _offset = other._offset;
    _address = other._address;
    _source = other._source;

    // The moved-from symbol is left empty rather than with views into strings it no longer holds.
    other._line.clear();
    other._signature.clear();
    other.ResetLineViews();
    other.ResetSignatureViews();
    other._offset = 0;
    other._address = 0;
    other._source = {};
}

void Symbol::ResetLineViews()
{
    _libraryFullPath = {};
    _libraryName = {};
    _mangled = {};
}

void Symbol::ResetSignatureViews()
{
    _fullPath = {};
    _path = {};
    _namespace = {};
    _class = {};
    _name = {};
    _parameters = {};
}

void Symbol::FillOwned(string line)
{
    _line = std::move(line);
    Fill(_line);
}

void Symbol::Fill(std::string_view line)
{
    ResetLineViews();
    _signature.clear();
    ResetSignatureViews();
    _offset = 0;
    _address = 0;

    auto start = std::string_view::size_type { 0 };
    auto const open = line.find('(');
    if (open != std::string_view::npos) {
        _libraryFullPath = line.substr(0, open);
        auto const slash = _libraryFullPath.rfind('/');
        _libraryName
            = slash == std::string_view::npos ? _libraryFullPath : _libraryFullPath.substr(slash + 1);
        start = open + 1;
    }

    auto close = line.find(')', start);
    if (close == std::string_view::npos)
        close = line.rfind('[');
    auto const symbolEnd = std::min(close, line.size());

    auto const plus = line.find('+', start);
    auto const mangledEnd = plus != std::string_view::npos ? plus : symbolEnd;
    if (plus != std::string_view::npos)
        _offset = ReadOffset(Between(line, plus + kMarkerAndPrefix, symbolEnd));

    ParseAddress(line);
    _mangled = Between(line, start, mangledEnd);
    _signature = TypeInfo::Demangle(string(_mangled).c_str());
    ParseSignature();
}

void Symbol::ParseSignature()
{
    ResetSignatureViews();
    if (_signature.empty())
        return;

    std::string_view const signature(_signature);
    auto const open = signature.find('(');
    if (open != string::npos) {
        auto end = signature.rfind(')');
        // A ')' that stands before the '(' does not close the parameter list.
        if (end != string::npos && end < open)
            end = string::npos;
        ZAR_CHECK(PreCondition, end != string::npos, "",
            ZAR_SOURCE_INFO_OF(kParseSignatureFunction, ZAR_SOURCE_FILE, 24));
        _fullPath = signature.substr(0, open);
        _parameters = signature.substr(open + 1, end - open - 1);
    } else {
        _fullPath = signature;
    }

    // The qualified name is split at its last two "::"; each search finds the second ':' of a pair.
    auto const lastColon = _fullPath.rfind(':');
    if (lastColon == string::npos) {
        _name = _fullPath;
        return;
    }
    auto const pathEnd = lastColon == 0 ? 0 : lastColon - 1;
    _path = _fullPath.substr(0, pathEnd);
    _name = _fullPath.substr(lastColon + 1);

    auto const previousColon = pathEnd == 0 ? string::npos : _fullPath.rfind(':', pathEnd - 1);
    if (previousColon == string::npos) {
        _class = _path;
        return;
    }
    _namespace = _fullPath.substr(0, previousColon == 0 ? 0 : previousColon - 1);
    _class = Between(_fullPath, previousColon + 1, pathEnd);
}

void Symbol::ParseAddress(std::string_view text)
{
    auto const open = text.rfind('[');
    auto const close = text.rfind(']');
    if (open == std::string_view::npos || close == std::string_view::npos)
        return;
    _address = ReadAddress(Between(text, open + kMarkerAndPrefix, close));
}

void Symbol::SetSignature(std::string_view signature)
{
    // The views into the old signature die with it, so they go before the new text comes in.
    ResetSignatureViews();
    _signature.assign(signature);
    ParseSignature();
}

} // namespace Zar::Lt::Exceptions
