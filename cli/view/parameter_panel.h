// The parameters of a node as widgets, made from its description.
#pragma once

#include "cli/view/edits.h"
#include "host/parameters/node_parameters.h"

#include <functional>
#include <string>
#include <vector>

namespace cli {

class ParameterPanel {
public:
  /** What the panel has others do, after the frame. */
  struct Actions {
    std::function<void(BaseList2D*, LONG)> press;                                         ///< a button
    std::function<void(BaseList2D*, LONG)> chooseFile;                                    ///< for a file name
    std::function<std::vector<BaseList2D*>(const host::resource::Parameter&)> candidates; ///< for a link
  };

  ParameterPanel(Edits& edits, const Actions& actions) : edits_(edits), actions_(actions) {}

  void Show(BaseList2D* node, float scale);

private:
  struct Item {
    int parameter = -1, group = -1; ///< one of them
  };
  typedef std::vector<std::vector<Item>> Tree; ///< items of each group, those of none last

  Tree Arrange() const;
  bool HasContent(const Tree& tree, int group) const;
  void ShowItems(const Tree& tree, std::size_t at, int depth);
  void ShowParameter(const host::resource::Parameter& parameter);
  void ShowLabel(const host::resource::Parameter& parameter) const;

  bool ShowWhole(const host::resource::Parameter& parameter, GeData* value);
  bool ShowReal(const host::resource::Parameter& parameter, GeData* value);
  bool ShowVector(const host::resource::Parameter& parameter, GeData* value);
  bool ShowText(const host::resource::Parameter& parameter, GeData* value);
  bool ShowLink(const host::resource::Parameter& parameter, GeData* value);
  bool ShowCurve(const host::resource::Parameter& parameter, GeData* value);

  Edits& edits_;
  Actions actions_;
  const host::resource::Description* description_ = nullptr;
  BaseList2D* node_ = nullptr;
  float scale_ = 1.0f;
  std::string typed_; ///< of the text that is being edited
  LONG typedId_ = 0;
};

} // namespace cli
