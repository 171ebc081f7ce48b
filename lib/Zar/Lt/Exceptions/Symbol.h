#pragma once

#include "Zar/Lt/Exceptions/SourceInfo.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Zar::Lt::Exceptions {

// One line of a captured call stack, split into its parts. The library and mangled views point into
// the line the symbol was filled from (or into the symbol's own copy of it, see FillOwned); the
// others point into the symbol's own demangled signature. Moving re-points the views that refer to
// the symbol's own strings, since a short string's characters move with the object.
class Symbol {
public:
    Symbol() = default;
    explicit Symbol(std::string_view line);
    Symbol(Symbol&& other) noexcept;
    Symbol& operator=(Symbol&& other) noexcept;
    Symbol(Symbol const&) = delete;
    Symbol& operator=(Symbol const&) = delete;

    // Splits `line` into the fields; the library and mangled views then refer to `line`.
    void Fill(std::string_view line);
    // As Fill, but the symbol keeps its own copy of the line, so it may outlive the original.
    void FillOwned(std::string line);
    void ParseSignature();
    void ParseAddress(std::string_view text);
    void SetSignature(std::string_view signature);

    std::string_view LibraryFullPath() const { return _libraryFullPath; }
    std::string_view LibraryName() const { return _libraryName; }
    std::string_view Mangled() const { return _mangled; }
    std::string const& Signature() const { return _signature; }
    std::string_view FullPath() const { return _fullPath; }
    std::string_view Path() const { return _path; }
    std::string_view Namespace() const { return _namespace; }
    std::string_view Class() const { return _class; }
    std::string_view Name() const { return _name; }
    std::string_view Parameters() const { return _parameters; }
    int32_t Offset() const { return _offset; }
    uint64_t Address() const { return _address; }
    SourceInfo const& Source() const { return _source; }

private:
    void ResetLineViews();
    void ResetSignatureViews();
    void TakeOver(Symbol& other) noexcept;

    std::string_view _libraryFullPath;
    std::string_view _libraryName;
    std::string_view _mangled;
    std::string _signature;
    std::string_view _fullPath;
    std::string_view _path;
    std::string_view _namespace;
    std::string_view _class;
    std::string_view _name;
    std::string_view _parameters;
    int32_t _offset = 0;
    uint64_t _address = 0;
    SourceInfo _source;
    // The copy of the stack line made by FillOwned; empty when the line belongs to the caller.
    std::string _line;
};

} // namespace Zar::Lt::Exceptions
