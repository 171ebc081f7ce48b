#pragma once

#include "Zar/Lt/Exceptions/BaseException.h"

namespace Zar::Lt::Exceptions {

// Adds no members: it lets a family of exceptions be caught through its template base.
template <typename T> class Base : public BaseException {
public:
    using BaseException::BaseException;
};

} // namespace Zar::Lt::Exceptions
