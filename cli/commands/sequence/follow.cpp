#include "cli/commands/sequence/follow.h"

#include "cli/commands/output/progress_bar.h"
#include "cli/system/exit_status.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/application.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <thread>
#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#else
#include <unistd.h>
#endif

namespace cli {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kFastestPoll = 0.1; ///< seconds

/**
 * A part's results may show up on a shared disk some time after its process is gone; it counts as ended too
 * early once it was looked at this often without it.
 */
constexpr int kLooks = 3;

/** Without a terminal a line of progress is printed at each of these shares, of jobs that take a while. */
constexpr double kLineShare = 0.1;
constexpr double kLineSeconds = 10.0;

double Since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string ClockTime(double secondsFromNow) {
  const std::time_t then = std::time(nullptr) + (std::time_t)secondsFromNow;
  std::ostringstream text;
  text << std::put_time(std::localtime(&then), "%H:%M");
  return text.str();
}

std::string Duration(double seconds) {
  if (seconds < 60) return Fixed(seconds, 0) + " s";
  if (seconds < 6000) return Fixed(seconds / 60, 0) + " min";
  return Fixed(seconds / 3600, 1) + " h";
}

struct PartState {
  enum { Open, Done, GivenUp } end = Open;
  int submitted = 0; ///< by this run
  int looks = 0;     ///< since its process is gone
};

class Follower {
public:
  Follower(SequenceWork& work, Runner& runner, const std::vector<Part>& parts, const WorkFolder& folder)
      : work_(work),
        runner_(runner),
        parts_(parts),
        folder_(folder),
        states_(parts.size()),
        items_((std::size_t)work.Count(), ItemState::Missing),
        bar_(ErrorsAreShown()) {}

  int Run();

private:
  bool LookAt(int part);
  void Begin();
  void Advance();
  bool IsOver() const;
  void ShowProgress();
  int Interrupted();
  int Report();
  void ReportGivenUp(int number) const;
  std::vector<int> ItemsIn(ItemState state, int first, int last) const;
  int Made() const {
    return work_.Count() - (int)std::count(items_.begin(), items_.end(), ItemState::Missing);
  }
  std::string Units(int count) const { return Counted(count, work_.Unit()); }

  SequenceWork& work_;
  Runner& runner_;
  const std::vector<Part>& parts_;
  const WorkFolder& folder_;
  std::vector<PartState> states_;
  std::vector<ItemState> items_; ///< what is there is not looked at again
  ProgressBar bar_;
  Clock::time_point start_ = Clock::now();
  int madeBefore_ = 0;
  double shown_ = 0.0; ///< share at the last line
};

/** True when all items of the part are there. */
bool Follower::LookAt(int part) {
  bool whole = true;
  for (int item = parts_[(std::size_t)part].first; item <= parts_[(std::size_t)part].last; ++item) {
    ItemState& state = items_[(std::size_t)item];
    if (state == ItemState::Missing) state = work_.Look(item);
    whole = whole && state != ItemState::Missing;
  }
  return whole;
}

void Follower::Begin() {
  folder_.Make();
  const std::set<int> alive = runner_.Alive();
  std::vector<int> missing;
  for (int part = 0; part < (int)parts_.size(); ++part) {
    if (LookAt(part))
      states_[(std::size_t)part].end = PartState::Done;
    else if (!alive.count(part))
      missing.push_back(part);
  }
  madeBefore_ = Made();
  if (madeBefore_ > 0) Line(std::cout) << Units(madeBefore_) << " of " << work_.Count() << " already there";
  for (const int part : missing) {
    folder_.Forget(part);
    states_[(std::size_t)part].submitted = 1;
  }
  if (!missing.empty()) runner_.Start(missing);
  if (!runner_.Outlives().empty() && !IsOver())
    Line(std::cout) << runner_.Outlives() << ": " << Units(work_.Count() - madeBefore_)
                    << " to make, logs and script in " << folder_.Path("");
  std::cout.flush();
}

void Follower::Advance() {
  const std::set<int> alive = runner_.Alive();
  std::vector<int> again;
  for (int part = 0; part < (int)parts_.size(); ++part) {
    PartState& state = states_[(std::size_t)part];
    if (state.end != PartState::Open) continue;
    if (LookAt(part)) {
      state.end = PartState::Done;
    } else if (alive.count(part)) {
      state.looks = 0;
    } else if (++state.looks >= kLooks) {
      state.looks = 0;
      // A cluster starts a part again by itself when a node is lost; that counts, too.
      if (std::max(state.submitted, (int)folder_.Starts(part).size()) >= kMostTries) {
        state.end = PartState::GivenUp;
      } else {
        again.push_back(part);
        ++state.submitted;
      }
    }
  }
  if (!again.empty()) runner_.Start(again);
}

bool Follower::IsOver() const {
  return std::all_of(states_.begin(), states_.end(),
                     [](const PartState& s) { return s.end != PartState::Open; });
}

void Follower::ShowProgress() {
  const int made = Made(), now = made - madeBefore_;
  const double share = (double)made / work_.Count(), seconds = Since(start_);
  std::string remark =
      Grouped(made) + " of " + Units(work_.Count()) + ", " + Counted(runner_.Running(), "part") + " running";
  if (now > 0) {
    const double left = seconds / now * (work_.Count() - made);
    remark += ", ends about " + ClockTime(left) + " (in " + Duration(left) + ")";
  }
  bar_.Show(share, remark);
  if (ErrorsAreShown() || seconds < kLineSeconds || share < shown_ + kLineShare) return;
  shown_ = share;
  Line(std::cerr) << remark;
}

/** The user pressed Ctrl-C. */
int Follower::Interrupted() {
  bar_.Clear();
  const std::string job = runner_.Outlives();
  bool cancel = job.empty();
  if (!job.empty() && isatty(0)) {
    std::cerr << "\n" << job << ": leave it running, or cancel it? [l/c] " << std::flush;
    std::string answer;
    cancel = std::getline(std::cin, answer) && !answer.empty() && (answer[0] == 'c' || answer[0] == 'C');
  }
  if (cancel) runner_.Cancel();
  Line(std::cerr) << (cancel ? "stopped: " : job + " goes on: ") << Grouped(Made()) << " of "
                  << Units(work_.Count()) << " are there; the same command "
                  << (cancel ? "makes the others" : "follows it again");
  return kExitIncomplete;
}

std::vector<int> Follower::ItemsIn(ItemState state, int first, int last) const {
  std::vector<int> items;
  for (int item = first; item <= last; ++item)
    if (items_[(std::size_t)item] == state) items.push_back(item);
  return items;
}

void Follower::ReportGivenUp(int number) const {
  const Part& part = parts_[(std::size_t)number];
  std::vector<std::string> starts = folder_.Starts(number);
  starts.erase(std::unique(starts.begin(), starts.end()), starts.end());
  std::string nodes;
  for (const std::string& node : starts) nodes += (nodes.empty() ? " on " : ", ") + node;
  const std::string last = folder_.LastLine(number);
  Line line(std::cerr);
  line << work_.Names(ItemsIn(ItemState::Missing, part.first, part.last)) << ": not made in " << kMostTries
       << " tries" << nodes;
  if (!last.empty()) line << "; the last line was: " << last;
  line << " (" << folder_.Log(number) << ")";
}

int Follower::Report() {
  bar_.Clear();
  for (int part = 0; part < (int)parts_.size(); ++part)
    if (states_[(std::size_t)part].end == PartState::GivenUp) ReportGivenUp(part);
  const std::vector<int> flawed = ItemsIn(ItemState::Flawed, 0, work_.Count() - 1);
  if (!flawed.empty())
    Line(std::cerr) << work_.Names(flawed) << ": " << work_.Flaw() << " (logs: " << folder_.Path("part_*.log")
                    << ")";
  const bool whole = Made() == work_.Count();
  if (whole) work_.Finish();
  const std::string remark = flawed.empty() ? "" : "; " + Units((int)flawed.size()) + " with a problem";
  Line(whole ? std::cout : std::cerr)
      << Grouped(Made()) << " of " << Units(work_.Count()) << ", " << Grouped(Made() - madeBefore_)
      << " of them made now in " << Duration(Since(start_)) << remark;
  return whole && flawed.empty() ? kExitWhole : kExitIncomplete;
}

int Follower::Run() {
  host::InstallInterruptHandler();
  Begin();
  double pause = kFastestPoll;
  while (!IsOver()) {
    ShowProgress();
    for (const Clock::time_point from = Clock::now(); Since(from) < pause && !host::Interrupted();)
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    if (host::Interrupted()) return Interrupted();
    // Often at first, when mistakes show; a cluster is not asked more often than its users need to know.
    pause = std::min(runner_.SlowestPoll(), pause * 1.2);
    Advance();
  }
  return Report();
}

} // namespace

int FollowSequence(SequenceWork& work, Runner& runner, const std::vector<Part>& parts,
                   const WorkFolder& folder) {
  return Follower(work, runner, parts, folder).Run();
}

} // namespace cli
