// The end of an application in a test.
#pragma once

#include "host/application.h"
#include "support/common.h"

/** Closes it; what was reported until then must be what the test expects. */
inline void ExpectReports(host::Application& application, const std::vector<std::string>& expected = {}) {
  std::vector<std::string> lines = application.Misbehaviour();
  for (const std::string& line : application.Close()) lines.push_back(line);
  EXPECT_EQ(lines, expected);
}

/**
 * Lets each call of that kind fail in turn: work() runs with the n-th one failing, then check(struck) looks
 * at what it left. Ends when no call was left to fail; gives the number of those that failed.
 */
template <class Work, class Check>
int FailEach(host::Application& application, host::Fault fault, Work work, Check check, int most = 500) {
  host::Faults& faults = application.GetFaults();
  for (int n = 1; n <= most; ++n) {
    SCOPED_TRACE(n);
    faults.FailAt(fault, n);
    work();
    const bool struck = faults.Calls(fault) >= n;
    faults.Clear();
    check(struck);
    if (!struck || testing::Test::HasFailure()) return n - 1;
  }
  ADD_FAILURE() << "more than " << most << " calls";
  return most;
}

/** What is alive is as much as it was before. */
inline void ExpectLive(host::Application& application, const host::LiveCounts& before) {
  const host::LiveCounts now = application.Live();
  EXPECT_EQ(std::tie(now.nodes, now.nodeData, now.bitmaps, now.blocks, now.bytes),
            std::tie(before.nodes, before.nodeData, before.bitmaps, before.blocks, before.bytes));
}

/** The console's lines from then on. */
inline std::vector<std::string> LinesSince(host::Application& application, std::size_t before) {
  const std::vector<std::string> lines = application.GetConsole().Lines();
  return {lines.begin() + (std::ptrdiff_t)before, lines.end()};
}

/** Chooses a path in the next file dialog and presses a button that asks for one; gives the lines printed
 * meanwhile. */
inline std::vector<std::string> PressWithFile(host::Application& application, BaseObject* op, LONG button,
                                              const std::string& path) {
  const std::size_t before = application.GetConsole().Lines().size();
  application.GetDialogs().AnswerFile(path);
  application.PressButton(op, button);
  return LinesSince(application, before);
}
