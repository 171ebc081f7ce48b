#pragma once

#include "Zar/Lt/Exceptions/Logical.h"

namespace Zar::Lt::Exceptions {

// A condition that a function promises on its way out did not hold.
class PostCondition : public Logical<PostCondition> {
public:
    using Logical<PostCondition>::Logical;
};

} // namespace Zar::Lt::Exceptions
