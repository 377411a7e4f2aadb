// Answers other plug-ins that ask what the object holds and what became of its files.
#pragma once

#include "c4d.h"
#include "cloud/load_report.h"
#include "cloud/point_store.h"
#include "kelvra_messages.h"

#include <deque>
#include <string>
#include <vector>

namespace kelvra {

/** Owns what the pointers of an answer name. */
class CloudReporter {
public:
  /** FALSE, with the answer as it was, for a version that this build does not know. May throw bad_alloc. */
  Bool Fill(const PointStore& store, const std::vector<LoadReport>& reports, LReal size,
            KelvraCloudReport& answer);

private:
  const CHAR* Keep(std::string text);
  void AddFile(const LoadReport& report);
  void AddBlock(const PointBlock& block, VLONG group, const PointMapping& mapping);

  std::deque<std::string> texts_; ///< a deque: texts stay where they are while others are added
  std::deque<std::vector<KelvraLoadNote>> notes_;
  std::deque<std::vector<LLONG>> classes_;
  std::vector<KelvraLoadReport> files_;
  std::vector<KelvraBlockReport> blocks_;
};

} // namespace kelvra
