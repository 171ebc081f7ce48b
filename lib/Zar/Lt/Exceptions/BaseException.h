#pragma once

#include "Zar/Lt/Exceptions/SourceInfo.h"

#include <exception>
#include <string>
#include <vector>

namespace Zar::Lt::Exceptions {

// Root of every exception the system throws: a message, the place it was raised and the call stack
// captured at that moment. Causes are chained with std::nested_exception (std::throw_with_nested).
class BaseException : public std::exception {
public:
    BaseException(SourceInfo source, std::string message);
    ~BaseException() override;

    char const* what() const noexcept override;

    SourceInfo const& Source() const noexcept { return _source; }
    std::vector<std::string> const& CallStack() const noexcept { return _callStack; }

    static std::exception const* Inner(std::exception const* e);
    static std::exception const* MostInner(std::exception const* e);
    static BaseException const* InnerBase(BaseException const* e);
    static BaseException const* MostInnerBase(BaseException const* e);
    std::vector<std::exception const*> AllInner() const;

    static std::string Demangle(char const* name);

private:
    std::string _message;
    SourceInfo _source;
    std::vector<std::string> _callStack;
};

} // namespace Zar::Lt::Exceptions
