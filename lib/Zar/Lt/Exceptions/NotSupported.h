#pragma once

#include "Zar/Lt/Exceptions/Logical.h"

namespace Zar::Lt::Exceptions {

// The operation is not offered by this class.
class NotSupported : public Logical<NotSupported> {
public:
    using Logical<NotSupported>::Logical;
};

} // namespace Zar::Lt::Exceptions
