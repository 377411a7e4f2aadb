// Rendered frames as a sequence. Each picture carries a fingerprint of what it was made from.
#pragma once

#include "cli/commands/render/render_plan.h"
#include "cli/commands/sequence/picture_origin.h"
#include "cli/commands/sequence/sequence_work.h"

#include <nlohmann/json.hpp>

namespace cli {

class FrameWork : public SequenceWork {
public:
  /** Reads the plan's files once, for the fingerprint; `options` are those that the pictures depend on. */
  FrameWork(const RenderPlan& plan, const nlohmann::json& options);

  int Count() const override { return plan_.Frames().Count(); }
  const char* Unit() const override { return "frame"; }
  std::string Names(const std::vector<int>& items) const override;
  std::string Flaw() const override { return "rendered, but not everything was loaded" + problem_; }
  std::string Identity() const override { return fingerprint_ + " " + plan_.output; }
  ItemState Look(int item) override;
  int Make(int first, int last) override;

private:
  int FrameOf(int item) const { return plan_.Frames().first + item; }
  std::string Path(int item) const { return FrameName(plan_.output, FrameOf(item)); }
  int Render(const std::vector<int>& items);

  const RenderPlan& plan_;
  PictureOrigin origin_;
  std::string fingerprint_;
  std::string problem_; ///< of the last flawed frame that was looked at, after a colon; it is that of all
};

} // namespace cli
