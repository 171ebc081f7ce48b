#pragma once

#include "Zar/Lt/Exceptions/Base.h"

namespace Zar::Lt::Exceptions {

// Base of the programming-error family: broken pre- and postconditions, unsupported operations.
template <typename T> class Logical : public Base<T> {
public:
    using Base<T>::Base;
};

} // namespace Zar::Lt::Exceptions
