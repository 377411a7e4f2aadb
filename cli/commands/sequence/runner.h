// Who makes the parts of a sequence: processes of this computer, or a cluster.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace cli {

/** Functions throw std::runtime_error. */
class Runner {
public:
  virtual ~Runner() {}

  /** Parts that were handed over, by an earlier run of the program too, and have not ended. */
  virtual std::set<int> Alive() = 0;
  /** How many of them are being made; the others wait. */
  virtual int Running() const = 0;
  virtual void Start(const std::vector<int>& parts) = 0;
  /** Ends all parts. */
  virtual void Cancel() = 0;
  /** What goes on when this program ends, as "job 12"; empty when the parts end with it. */
  virtual std::string Outlives() const { return ""; }
  /** The longest time between two questions about the parts, in seconds. */
  virtual double SlowestPoll() const = 0;
};

} // namespace cli
