#pragma once

// Marks a test function that must stand as a frame of its own in a captured call stack, in every
// build type and with either compiler. An optimiser may otherwise inline it, turn its last call into
// a jump that leaves no frame, or move its throwing path into a "[clone .cold]" or a constant-
// propagated clone, whose local name backtrace_symbols cannot see. Compiled without optimisation,
// the function keeps its frame and its exported name.
#if defined(__clang__)
#define ZAR_STACK_PROBE [[gnu::noinline, clang::optnone]]
#else
#define ZAR_STACK_PROBE [[gnu::noinline, gnu::optimize("O0")]]
#endif
