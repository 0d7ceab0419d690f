#pragma once

#include <cstddef>

namespace vornhale::text {

/// Guards a read-only mapping of a file that another program may cut short while it is read:
/// the operator's log, still open in the logging program. A page of such a mapping that lies
/// past the file's new end cannot be read, and the system ends a program that tries (SIGBUS).
/// Under the guard that page and the rest of the mapping read as zero bytes instead: bytes a
/// reader refuses or takes as it takes any other file, never the end of the program.
///
/// A bus error anywhere else goes on as before the guard: to the handler the program had, or
/// it ends the program.
///
/// Returns the guard's number, or -1 when every guard is in use (the caller then reads the
/// file instead of mapping it). `start` is the mapping's first byte, `size` its length.
int guardMapping(const void* start, std::size_t size);

/// Ends the guard `guard` (from `guardMapping`); called before the mapping is unmapped.
void unguardMapping(int guard);

} // namespace vornhale::text
