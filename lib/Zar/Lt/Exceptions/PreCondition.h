#pragma once

#include "Zar/Lt/Exceptions/Logical.h"

namespace Zar::Lt::Exceptions {

// A condition that a caller had to meet did not hold.
class PreCondition : public Logical<PreCondition> {
public:
    using Logical<PreCondition>::Logical;
};

} // namespace Zar::Lt::Exceptions
