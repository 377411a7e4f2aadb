#include "cli/commands/options/frame_range.h"

#include "cli/system/exit_status.h"

#include <regex>

namespace cli {

namespace {

/** The last run of # in the name of the file; length 0 without one. */
struct Run {
  std::size_t begin = 0, length = 0;
};
Run FindRun(const std::string& pattern) {
  Run run;
  const std::size_t end = pattern.rfind('#');
  const std::size_t folder = pattern.find_last_of("/\\");
  if (end == std::string::npos || (folder != std::string::npos && end < folder)) return run;
  run.begin = end;
  while (run.begin > 0 && pattern[run.begin - 1] == '#') --run.begin;
  run.length = end + 1 - run.begin;
  return run;
}

} // namespace

FrameRange ParseFrames(const std::string& text) {
  std::smatch match;
  if (!std::regex_match(text, match, std::regex("([0-9]{1,6})(-([0-9]{1,6}))?")))
    throw UsageError{"expected FIRST-LAST, as in 0-24"};
  FrameRange range;
  range.first = std::stoi(match[1]);
  range.last = match[3].matched ? std::stoi(match[3]) : range.first;
  if (range.last < range.first) throw UsageError{"the last frame comes before the first"};
  return range;
}

bool HasFrameNumber(const std::string& pattern) {
  return FindRun(pattern).length > 0;
}

std::string FrameName(const std::string& pattern, int frame) {
  const Run run = FindRun(pattern);
  if (run.length == 0) return pattern;
  std::string number = std::to_string(frame);
  if (number.size() < run.length) number.insert(0, run.length - number.size(), '0');
  return pattern.substr(0, run.begin) + number + pattern.substr(run.begin + run.length);
}

} // namespace cli
