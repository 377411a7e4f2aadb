// What a program can still take of the machine's memory. One implementation per system.
#pragma once

namespace host {

/**
 * Bytes that this process can fill without pressing others out: of the machine, and of the limits set for the
 * process and its group. 0 where the system does not tell.
 */
long long FreeMemory();

} // namespace host
