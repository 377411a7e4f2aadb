// Changes of the document that the user makes, as undo steps.
#pragma once

#include "c4d.h"

#include <vector>

namespace cli {

class Edits {
public:
  /** Sets a parameter as a user does. All values that one held widget gives a parameter are one step. */
  bool SetParameter(BaseList2D* node, const DescID& id, const GeData& value, bool held);
  /** The held widget was let go: the next value begins a step of its own. */
  void LetGo() { held_ = nullptr; }

  /** As one step. */
  static void Delete(const std::vector<BaseList2D*>& nodes);
  /** With the effects that render it: the copy is rendered too. */
  static BaseObject* Duplicate(BaseObject* op);
  static bool SetVisible(BaseObject* op, bool visible);

private:
  BaseList2D* held_ = nullptr;
  LONG heldId_ = 0;
};

} // namespace cli
