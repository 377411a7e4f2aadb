// Reads a text file line by line into an array of points: thinning, format detection, filtering, growth,
// progress.
#pragma once

#include "text/odd_lines.h"
#include "text/text_loader.h"

#include <cstddef>
#include <functional>
#include <string>

namespace kelvra {

/** Longest line that is parsed, in bytes; longer ones are rejected without being kept. */
constexpr std::size_t kMostLineBytes = 64 * 1024;
/** Points at or below this height mean "no data" in the files of the field. */
constexpr double kNoDataHeight = -9999.0;
/**
 * Elements of the first growth request; each later one asks for twice as many. A refused one is followed by
 * requests for what the rest of the file can hold.
 */
constexpr std::int64_t kFirstGrowth = 0x10000000;

struct TextInput {
  /** Up to size bytes; 0 at the end. */
  std::function<std::size_t(char* buffer, std::size_t size)> read;
  std::int64_t fileSize = 0; ///< bytes, for the progress
  std::int32_t everyNth = 1; ///< of the lines, the first one used; below 2 all are
  /** Moves the array to a new size in bytes; NULL when refused, the old array then stays. */
  std::function<void*(void* array, std::size_t bytes)> reallocate;
  std::int64_t firstGrowth = kFirstGrowth;
  /** Called when the part that is read, in thousandths, has changed; false stops. May be empty. */
  std::function<bool(int thousandths)> progress;
  std::int32_t most = kMostBlockPoints; ///< points at which the reading ends
};

struct TextResult {
  TextPoint* points = NULL; ///< the caller's, from reallocate; NULL without points
  std::int32_t count = 0;
  SourceBox box;          ///< of the accepted points
  std::int64_t lines = 0; ///< that were read
  std::int64_t thinned = 0;
  std::int64_t rejected = 0, firstRejected = 0; ///< lines that no form fits; number of the first, from 1
  std::int64_t noData = 0;                      ///< points at or below kNoDataHeight
  std::int64_t notFinite = 0;                   ///< points that are not finite 32-bit floats
  std::int64_t noMemory = 0;                    ///< points that memory was refused for
  bool full = false;                            ///< the input's `most` points came, and one more
  bool stopped = false;                         ///< by progress
  std::string firstLine;                        ///< start of the first line with content, for messages
  bool looksUtf16 = false;                      ///< such a file gives no points
  OddLines odd;                                 ///< what the readers do not take as it was meant
};

/**
 * The loader's format is detected from the first line that parses and kept to the end of the file. Throws
 * std::bad_alloc, before the first call of reallocate, when there is no memory for the line buffer.
 */
TextResult LoadText(const TextLoader& loader, const TextInput& input);

} // namespace kelvra
