#include "Zar/Lt/Exceptions/BaseException.h"

#include "Zar/Lt/Exceptions/StackInfo.h"
#include "Zar/Lt/Exceptions/TypeInfo.h"

#include <utility>

namespace Zar::Lt::Exceptions {

BaseException::BaseException(SourceInfo source, std::string message)
    : _message(std::move(message))
    , _source(source)
    , _callStack(StackInfo::Current(1, nullptr))
{
}

BaseException::~BaseException() = default;

char const* BaseException::what() const noexcept { return _message.c_str(); }

std::exception const* BaseException::Inner(std::exception const* e)
{
    auto const* nested = dynamic_cast<std::nested_exception const*>(e);
    if (nested == nullptr || !nested->nested_ptr())
        return nullptr;
    // The exception_ptr held by the nested_exception keeps the cause alive, so the address of the
    // rethrown object stays valid as long as `e` does.
    try {
        std::rethrow_exception(nested->nested_ptr());
    } catch (std::exception const& cause) {
        return &cause;
    } catch (...) {
        return nullptr;
    }
}

std::exception const* BaseException::MostInner(std::exception const* e)
{
    if (e == nullptr)
        return nullptr;
    for (auto const* inner = Inner(e); inner != nullptr; inner = Inner(e))
        e = inner;
    return e;
}

BaseException const* BaseException::InnerBase(BaseException const* e)
{
    return dynamic_cast<BaseException const*>(Inner(e));
}

BaseException const* BaseException::MostInnerBase(BaseException const* e)
{
    if (e == nullptr)
        return nullptr;
    for (auto const* inner = InnerBase(e); inner != nullptr; inner = InnerBase(e))
        e = inner;
    return e;
}

std::vector<std::exception const*> BaseException::AllInner() const
{
    std::vector<std::exception const*> causes;
    for (auto const* inner = Inner(this); inner != nullptr; inner = Inner(inner))
        causes.push_back(inner);
    return causes;
}

std::string BaseException::Demangle(char const* name) { return TypeInfo::Demangle(name); }

} // namespace Zar::Lt::Exceptions
