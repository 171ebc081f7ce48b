#pragma once

namespace zar::logging {

// The back end's nested diagnostic context. The registry only hands it out; nothing in this system
// pushes or pops context yet, so the interface carries no operation beyond its destruction.
class INestedDiagnosticContext {
public:
    virtual ~INestedDiagnosticContext() = 0;
};

inline INestedDiagnosticContext::~INestedDiagnosticContext() = default;

} // namespace zar::logging
