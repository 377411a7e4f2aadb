#include "cli/view/parameter_panel.h"

#include "cli/text/format.h"
#include "cli/view/curve_widget.h"
#include "cli/view/fitted_text.h"
#include "host/application.h"

#include <algorithm>
#include <cfloat>
#include <climits>
#include <imgui.h>
#include <imgui_stdlib.h>

namespace cli {

using host::resource::ElementType;
using host::resource::Parameter;
using host::resource::Unit;

namespace {

/** A stored number of 1 is shown as that many, with a sign. */
struct Shown {
  double factor = 1.0;
  const char* format = "%.6g";
};

Shown ShownAs(Unit unit) {
  if (unit == Unit::kPercent) return {100.0, "%.4g %%"};
  if (unit == Unit::kDegree) return {57.29577951308232, "%.4g\u00b0"};
  return {};
}

double Bound(const std::optional<host::resource::Numbers>& limit, int axis, double otherwise) {
  return limit ? (*limit)[(std::size_t)axis] : otherwise;
}

/** Coordinates in full: they differ in their last digits. */
const char* FormatOf(const Shown& shown, double largest) {
  return shown.factor == 1.0 && std::abs(largest) >= 1e5 ? "%.10g" : shown.format;
}

double StepOf(const Parameter& parameter, double value) {
  if (parameter.step) return (*parameter.step)[0];
  return std::max(0.01, std::abs(value) * 0.01);
}

} // namespace

ParameterPanel::Tree ParameterPanel::Arrange() const {
  const std::size_t none = description_->layout.size();
  Tree tree(none + 1);
  std::vector<bool> placed(none, false);
  const auto place = [&](int group) {
    // From the outermost group that has no place yet.
    std::vector<int> open;
    for (int at = group; at >= 0 && !placed[(std::size_t)at];
         at = description_->layout[(std::size_t)at].parent)
      open.push_back(at);
    for (auto at = open.rbegin(); at != open.rend(); ++at) {
      const int parent = description_->layout[(std::size_t)*at].parent;
      tree[parent < 0 ? none : (std::size_t)parent].push_back({-1, *at});
      placed[(std::size_t)*at] = true;
    }
  };
  for (std::size_t i = 0; i < description_->parameters.size(); ++i) {
    const Parameter& parameter = description_->parameters[i];
    if (parameter.hidden) continue;
    place(parameter.group);
    tree[parameter.group < 0 ? none : (std::size_t)parameter.group].push_back({(int)i, -1});
  }
  return tree;
}

void ParameterPanel::Show(BaseList2D* node, float scale) {
  node_ = node;
  scale_ = scale;
  description_ = host::FindDescription(*host::Impl(node));
  if (!description_) {
    ImGui::TextDisabled("%s has no parameters", host::Utf8(node->GetTypeName()).c_str());
    return;
  }
  ImGui::PushID(node);
  const Tree tree = Arrange();
  ShowItems(tree, tree.size() - 1, 0);
  if (!ImGui::IsAnyItemActive()) edits_.LetGo();
  ImGui::PopID();
}

void ParameterPanel::ShowItems(const Tree& tree, std::size_t at, int depth) {
  const int columns = at < description_->layout.size() ? description_->layout[at].columns : 1;
  int buttons = 0;
  for (const Item& item : tree[at]) {
    if (item.parameter >= 0) {
      const Parameter& parameter = description_->parameters[(std::size_t)item.parameter];
      const bool beside = parameter.type == ElementType::kButton && buttons % columns != 0;
      if (beside) ImGui::SameLine();
      buttons = parameter.type == ElementType::kButton ? buttons + 1 : 0;
      ShowParameter(parameter);
      continue;
    }
    const host::resource::Group& group = description_->layout[(std::size_t)item.group];
    if (group.title.empty()) {
      ShowItems(tree, (std::size_t)item.group, depth);
      continue;
    }
    // The groups of the host's own types come first and are of little interest.
    const bool open = group.isOpen || group.id == 802 || group.id == 1000994;
    ImGui::PushID(item.group);
    const int flags = open ? ImGuiTreeNodeFlags_DefaultOpen : 0;
    if (depth == 0) {
      if (ImGui::CollapsingHeader(group.title.c_str(), flags)) ShowItems(tree, (std::size_t)item.group, 1);
    } else if (ImGui::TreeNodeEx(group.title.c_str(), flags | ImGuiTreeNodeFlags_SpanAvailWidth)) {
      ShowItems(tree, (std::size_t)item.group, depth + 1);
      ImGui::TreePop();
    }
    ImGui::PopID();
  }
}

/** The short name at the left; resting on it shows all that the description says. */
void ParameterPanel::ShowLabel(const Parameter& parameter) const {
  const float width = ImGui::GetContentRegionAvail().x * 0.46f, left = ImGui::GetCursorPosX();
  ImGui::AlignTextToFramePadding();
  // The short name where the long one does not fit.
  const float room = width - 6 * scale_;
  const bool fits = ImGui::CalcTextSize(parameter.longName.c_str()).x <= room;
  ImGui::TextUnformatted(Shortened(fits ? parameter.longName : parameter.shortName, room).c_str());
  if (ImGui::IsItemHovered()) {
    const Shown shown = ShownAs(parameter.unit);
    std::string text = parameter.longName + "\n";
    if (!parameter.help.empty()) text += parameter.help + "\n";
    if (parameter.min) text += "from " + TwoDigits((*parameter.min)[0] * shown.factor) + "\n";
    if (parameter.max) text += "up to " + TwoDigits((*parameter.max)[0] * shown.factor) + "\n";
    ShowTooltip(text + parameter.identifier + ", " + std::to_string(parameter.id));
  }
  ImGui::SameLine(left + width);
  ImGui::SetNextItemWidth(-1);
}

void ParameterPanel::ShowParameter(const Parameter& parameter) {
  const DescID id(parameter.id);
  if (parameter.type == ElementType::kSeparator) return ImGui::Separator();
  if (parameter.type == ElementType::kStaticText) return ImGui::TextWrapped("%s", parameter.longName.c_str());
  GeData value;
  node_->GetParameter(id, value, DESCFLAGS_GET_0);
  ImGui::PushID(parameter.id);
  ImGui::BeginDisabled(!host::IsEnabled(*host::Impl(node_), id, value));
  bool changed = false;
  if (parameter.type == ElementType::kButton) {
    if (ImGui::Button(parameter.longName.c_str())) actions_.press(node_, parameter.id);
  } else {
    ShowLabel(parameter);
    switch (parameter.type) {
    case ElementType::kBool:
    case ElementType::kLong:
      changed = ShowWhole(parameter, &value);
      break;
    case ElementType::kReal:
      changed = ShowReal(parameter, &value);
      break;
    case ElementType::kVector:
    case ElementType::kColor:
      changed = ShowVector(parameter, &value);
      break;
    case ElementType::kString:
    case ElementType::kFilename:
      changed = ShowText(parameter, &value);
      break;
    case ElementType::kLink:
      changed = ShowLink(parameter, &value);
      break;
    case ElementType::kSpline:
      changed = ShowCurve(parameter, &value);
      break;
    default:
      ImGui::TextDisabled("cannot be edited here");
    }
  }
  if (changed) edits_.SetParameter(node_, id, value, ImGui::IsItemActive());
  ImGui::EndDisabled();
  ImGui::PopID();
}

bool ParameterPanel::ShowWhole(const Parameter& parameter, GeData* value) {
  int number = value->GetLong();
  if (parameter.type == ElementType::kBool) {
    bool on = number != 0;
    if (!ImGui::Checkbox("##value", &on)) return false;
    value->SetLong(on);
    return true;
  }
  if (!parameter.cycle.empty()) {
    const auto current = std::find_if(parameter.cycle.begin(), parameter.cycle.end(),
                                      [number](const auto& e) { return !e.isDivider && e.id == number; });
    const std::string text = current == parameter.cycle.end() ? std::to_string(number) : current->text;
    bool changed = false;
    if (!ImGui::BeginCombo("##value", text.c_str())) return false;
    for (const host::resource::CycleEntry& entry : parameter.cycle) {
      if (entry.isDivider) {
        ImGui::Separator();
      } else if (ImGui::Selectable(entry.text.c_str(), entry.id == number)) {
        value->SetLong(entry.id);
        changed = true;
      }
    }
    ImGui::EndCombo();
    return changed;
  }
  const int low = (int)Bound(parameter.min, 0, INT_MIN / 2), high = (int)Bound(parameter.max, 0, INT_MAX / 2);
  const float speed = parameter.step ? (float)(*parameter.step)[0] : 0.2f;
  if (!ImGui::DragInt("##value", &number, speed, low, high)) return false;
  value->SetLong(number);
  return true;
}

bool ParameterPanel::ShowReal(const Parameter& parameter, GeData* value) {
  const Shown shown = ShownAs(parameter.unit);
  double number = value->GetReal() * shown.factor;
  bool changed = false;
  if (parameter.isSlider && (parameter.sliderMax || parameter.max)) {
    const double low =
        Bound(parameter.sliderMin ? parameter.sliderMin : parameter.min, 0, 0.0) * shown.factor;
    const double high =
        Bound(parameter.sliderMax ? parameter.sliderMax : parameter.max, 0, 1.0) * shown.factor;
    // A slider has as many steps as its room has pixels.
    const char* format = shown.factor == 1.0 && high <= 1e3 ? "%.3g" : shown.format;
    changed = ImGui::SliderScalar("##value", ImGuiDataType_Double, &number, &low, &high, format);
  } else {
    const double low = Bound(parameter.min, 0, -DBL_MAX / 1e3) * shown.factor;
    const double high = Bound(parameter.max, 0, DBL_MAX / 1e3) * shown.factor;
    const float speed = (float)(StepOf(parameter, value->GetReal()) * shown.factor * 0.5);
    changed = ImGui::DragScalar("##value", ImGuiDataType_Double, &number, speed, &low, &high,
                                FormatOf(shown, number));
  }
  if (changed) value->SetReal(number / shown.factor);
  return changed;
}

bool ParameterPanel::ShowVector(const Parameter& parameter, GeData* value) {
  const Shown shown = ShownAs(parameter.unit);
  const Vector vector = value->GetVector();
  if (parameter.type == ElementType::kColor) {
    float rgb[3] = {(float)vector.x, (float)vector.y, (float)vector.z};
    if (!ImGui::ColorEdit3("##value", rgb)) return false;
    value->SetVector(Vector(rgb[0], rgb[1], rgb[2]));
    return true;
  }
  // Adding zero turns a negative zero into a plain one.
  double xyz[3] = {vector.x * shown.factor + 0.0, vector.y * shown.factor + 0.0,
                   vector.z * shown.factor + 0.0};
  const float speed = (float)(StepOf(parameter, vector.GetLength()) * shown.factor * 0.5);
  if (!ImGui::DragScalarN("##value", ImGuiDataType_Double, xyz, 3, speed, nullptr, nullptr,
                          FormatOf(shown, vector.GetLength()))) {
    // Fields of large coordinates are too narrow for them.
    if (ImGui::IsItemHovered() && vector.GetLength() >= 1e5)
      ShowTooltip(Fixed(xyz[0], 3) + "  " + Fixed(xyz[1], 3) + "  " + Fixed(xyz[2], 3));
    return false;
  }
  value->SetVector(Vector(xyz[0], xyz[1], xyz[2]) / shown.factor);
  return true;
}

bool ParameterPanel::ShowText(const Parameter& parameter, GeData* value) {
  const bool isFile = parameter.type == ElementType::kFilename;
  std::string text = isFile ? host::Utf8(value->GetFilename()) : host::Utf8(value->GetString());
  if (isFile) ImGui::SetNextItemWidth(-ImGui::GetFrameHeight() * 1.4f);
  if (typedId_ == parameter.id) text = typed_;
  const bool entered = ImGui::InputText("##value", &text, ImGuiInputTextFlags_EnterReturnsTrue);
  const bool left = ImGui::IsItemDeactivatedAfterEdit();
  if (ImGui::IsItemActive()) {
    typed_ = text;
    typedId_ = parameter.id;
  } else if (typedId_ == parameter.id) {
    typedId_ = 0;
  }
  if (isFile) {
    ImGui::SameLine();
    if (ImGui::Button("...")) actions_.chooseFile(node_, parameter.id);
  }
  if (!entered && !left) return false;
  if (isFile)
    value->SetFilename(Filename(host::FromUtf8(text)));
  else
    value->SetString(host::FromUtf8(text));
  return true;
}

bool ParameterPanel::ShowLink(const Parameter& parameter, GeData* value) {
  BaseDocument* doc = node_->GetDocument();
  BaseList2D* target = doc ? value->GetLink(doc) : nullptr;
  if (!ImGui::BeginCombo("##value", target ? host::Utf8(target->GetName()).c_str() : "(none)")) return false;
  bool changed = false;
  const auto offer = [&](BaseList2D* candidate, const std::string& name) {
    ImGui::PushID(candidate);
    if (ImGui::Selectable(name.c_str(), candidate == target)) {
      BaseLink link;
      link.SetLink(candidate);
      value->SetBaseLink(&link);
      changed = true;
    }
    ImGui::PopID();
  };
  offer(nullptr, "(none)");
  for (BaseList2D* candidate : actions_.candidates(parameter))
    offer(candidate, host::Utf8(candidate->GetName()));
  ImGui::EndCombo();
  return changed;
}

bool ParameterPanel::ShowCurve(const Parameter&, GeData* value) {
  SplineData curve;
  if (const CustomDataType* own = value->GetCustomDataType(CUSTOMDATATYPE_SPLINE))
    static_cast<const SplineData*>(own)->Copy(&curve);
  if (!EditCurve(&curve, 90.0f * scale_)) return false;
  value->SetCustomDataType(CUSTOMDATATYPE_SPLINE, curve);
  return true;
}

} // namespace cli
