#include "host/resource/description_builder.h"

#include "host/resource/parameter_builder.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>

namespace host::resource {
namespace {

class DescriptionBuilder {
public:
  DescriptionBuilder(const BuildInput& input, Description* description) : input_(input), out_(*description) {
    context_ = {input.file, [this](const Token& id) { return ResolveId(id); },
                [this](const std::string& identifier) { return TextsOf(identifier).longText; }};
  }

  void Build() {
    out_.name = input_.syntax->name.text;
    out_.symbols = *input_.symbols;
    const bool hasTitle = input_.syntax->title.kind != TokenKind::kEnd;
    out_.title = hasTitle ? TextsOf(input_.syntax->title.text).longText : out_.name;
    AddStatements(input_.syntax->statements, 0);
  }

private:
  [[noreturn]] void Fail(Place place, const std::string& message) const {
    throw ParseError(input_.file, place, message);
  }

  std::int32_t ResolveId(const Token& id) const {
    if (id.kind == TokenKind::kName) {
      const auto value = out_.symbols.Find(id.text);
      if (!value)
        Fail(id.place,
             "'" + id.text + "' is not defined in the header of " + out_.name + " or of an include");
      return *value;
    }
    using Limits = std::numeric_limits<std::int32_t>;
    if (id.integer < Limits::min() || id.integer > Limits::max()) {
      Fail(id.place, "'" + id.text + "' does not fit in 32 bits");
    }
    return std::int32_t(id.integer);
  }

  Texts TextsOf(const std::string& identifier) {
    if (const Texts* found = FindTexts(*input_.tables, identifier)) return *found;
    out_.missingTexts.push_back(identifier);
    return {PlaceholderText(identifier), PlaceholderText(identifier)};
  }

  void AddStatements(const std::vector<Statement>& statements, std::int32_t groupId) {
    for (const Statement& statement : statements) {
      switch (statement.kind) {
      case StatementKind::kInclude:
        Include(statement.name, groupId);
        break;
      case StatementKind::kShow:
        SetHidden(statement.name, false);
        break;
      case StatementKind::kHide:
        SetHidden(statement.name, true);
        break;
      case StatementKind::kElement:
        if (statement.element.type == ElementType::kGroup) {
          AddGroup(statement.element, groupId);
        } else {
          AddParameter(statement.element, groupId);
        }
      }
    }
  }

  void CheckRoom(Place place) const {
    if (out_.parameters.size() + out_.groups.size() >= kMaxElements) {
      Fail(place, "a description may hold " + std::to_string(kMaxElements) + " elements, this one has more");
    }
  }

  void AddParameter(const ElementSyntax& element, std::int32_t groupId) {
    CheckRoom(element.place);
    Parameter parameter;
    parameter.type = element.type;
    parameter.groupId = groupId;
    parameter.origin = out_.name;
    if (element.id) {
      parameter.id = ResolveId(*element.id);
      parameter.identifier = element.id->text;
    }
    NameParameter(&parameter);
    FillParameter(context_, element, &parameter);
    CheckNumber(element.place, parameter);
    parameter.order = nextOrder_++;
    Store(std::move(parameter));
  }

  static bool IsFiller(const Parameter& parameter) {
    return parameter.type == ElementType::kSeparator || parameter.type == ElementType::kStaticText;
  }

  void CheckNumber(Place place, const Parameter& parameter) const {
    if (IsFiller(parameter)) return; // their numbers are dummies
    if (parameter.id <= 0)
      Fail(place, "a parameter's number must be above 0, found " + std::to_string(parameter.id));
    const Parameter* known = out_.FindParameter(parameter.id);
    if (known && known->origin == out_.name) {
      Fail(place, "parameter " + std::to_string(parameter.id) + " is declared twice: " + known->identifier +
                      " and " + parameter.identifier);
    }
  }

  void NameParameter(Parameter* parameter) {
    if (IsFiller(*parameter) && !FindTexts(*input_.tables, parameter->identifier)) return;
    const Texts texts = TextsOf(parameter->identifier);
    parameter->longName = texts.longText;
    parameter->shortName = texts.shortText;
  }

  /** Declaring an included parameter again replaces it. */
  void Store(Parameter parameter) {
    const auto same = [&](const Parameter& each) { return !IsFiller(parameter) && each.id == parameter.id; };
    const auto known = std::find_if(out_.parameters.begin(), out_.parameters.end(), same);
    if (known == out_.parameters.end()) {
      out_.parameters.push_back(std::move(parameter));
    } else {
      *known = std::move(parameter);
    }
  }

  void AddGroup(const ElementSyntax& element, std::int32_t parentId) {
    CheckRoom(element.place);
    Group group;
    group.parentId = parentId;
    group.id = element.id ? ResolveId(*element.id) : --lastAnonymous_;
    if (element.id && group.id <= 0) Fail(element.place, "a group's number must be above 0");
    Group* target = FindOwnGroup(group.id);
    // A group that is there already, as those of an included description, is opened again.
    if (!target) {
      if (element.id) {
        group.identifier = element.id->text;
        group.name = TextsOf(group.identifier).longText;
      }
      group.order = nextOrder_++;
      out_.groups.push_back(std::move(group));
      target = &out_.groups.back();
    }
    for (const AttributeSyntax& attribute : element.attributes) ApplyToGroup(attribute, target);
    const std::int32_t id = target->id; // adding children moves the groups
    AddStatements(element.children, id);
  }

  Group* FindOwnGroup(std::int32_t id) { return const_cast<Group*>(out_.FindGroup(id)); }

  void ApplyToGroup(const AttributeSyntax& attribute, Group* group) const {
    switch (attribute.info->attribute) {
    case Attribute::kDefault:
      if (!attribute.values[0].isInteger) Fail(attribute.place, "a group's DEFAULT is 0 or 1");
      group->isOpen = attribute.values[0].integer != 0;
      break;
    case Attribute::kOpen:
      group->isOpen = true;
      break;
    case Attribute::kHidden:
      group->hidden = true;
      break;
    case Attribute::kColumns:
      group->columns = CheckColumns(attribute.values[0]);
      break;
    default:
      group->layout.emplace_back(attribute.info->keyword);
    }
  }

  std::int32_t CheckColumns(const Token& columns) const {
    constexpr std::int64_t kMaxColumns = 100;
    if (columns.integer < 0 || columns.integer > kMaxColumns) {
      Fail(columns.place, "expected 0 to " + std::to_string(kMaxColumns) + " columns, found " + columns.text);
    }
    return std::int32_t(columns.integer);
  }

  void Include(const Token& name, std::int32_t groupId) {
    if (!included_.insert(name.text).second) Fail(name.place, name.text + " is included twice");
    std::string error;
    const Description* included = input_.include(name.text, &error);
    if (!included) Fail(name.place, "cannot include " + name.text + ": " + error);
    out_.symbols.Merge(included->symbols);
    // Groups without a number get a new one, so that two includes do not share theirs.
    std::map<std::int32_t, std::int32_t> groupIds{{0, groupId}};
    for (const Group& group : included->groups)
      groupIds[group.id] = group.id < 0 ? --lastAnonymous_ : group.id;
    const int firstOrder = nextOrder_;
    for (Group group : included->groups) {
      CheckRoom(name.place);
      group.id = groupIds[group.id];
      group.parentId = groupIds[group.parentId];
      PlaceAfter(firstOrder, &group.order);
      if (!out_.FindGroup(group.id)) out_.groups.push_back(std::move(group));
    }
    for (Parameter parameter : included->parameters) {
      CheckRoom(name.place);
      parameter.groupId = groupIds[parameter.groupId];
      PlaceAfter(firstOrder, &parameter.order);
      Store(std::move(parameter));
    }
  }

  void PlaceAfter(int firstOrder, int* order) {
    *order += firstOrder;
    nextOrder_ = std::max(nextOrder_, *order + 1);
  }

  void SetHidden(const Token& name, bool hidden) {
    const std::int32_t id = ResolveId(name);
    auto* parameter = const_cast<Parameter*>(out_.FindParameter(id));
    Group* group = FindOwnGroup(id);
    if (!parameter && !group) Fail(name.place, "'" + name.text + "' is no element before this line");
    if (parameter) parameter->hidden = hidden;
    if (group) group->hidden = hidden;
  }

  const BuildInput& input_;
  Description& out_;
  ParameterContext context_;
  std::set<std::string> included_;
  std::int32_t lastAnonymous_ = 0;
  int nextOrder_ = 0;
};

} // namespace

bool BuildDescription(const BuildInput& input, Description* description, std::string* error) {
  return CatchParseError(error, [&] { DescriptionBuilder(input, description).Build(); });
}

} // namespace host::resource
