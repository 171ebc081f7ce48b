#pragma once

#include "Zar/Lt/Exceptions/BaseException.h"

namespace Zar::ResourcesLibrary {

// Failures of the resources library and the packager: a free message naming the operation and cause.
class ResourcesLibraryException : public Zar::Lt::Exceptions::BaseException {
public:
    using BaseException::BaseException;
};

} // namespace Zar::ResourcesLibrary
