#include "host/resource/description_builder.h"

#include "host/resource/parameter_builder.h"

#include <algorithm>
#include <limits>
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
    AddStatements(input_.syntax->statements);
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

  void AddStatements(const std::vector<Statement>& statements) {
    for (const Statement& statement : statements) {
      switch (statement.kind) {
      case StatementKind::kInclude:
        Include(statement.name);
        break;
      case StatementKind::kShow:
        SetHidden(statement.name, false);
        break;
      case StatementKind::kHide:
        SetHidden(statement.name, true);
        break;
      case StatementKind::kElement:
        if (statement.element.type == ElementType::kGroup) {
          AddGroup(statement.element);
        } else {
          AddParameter(statement.element);
        }
      }
    }
  }

  void CheckRoom(Place place) const {
    if (out_.parameters.size() + out_.groups.size() >= kMaxElements) {
      Fail(place, "a description may hold " + std::to_string(kMaxElements) + " elements, this one has more");
    }
  }

  void AddParameter(const ElementSyntax& element) {
    CheckRoom(element.place);
    Parameter parameter;
    parameter.group = group_;
    parameter.type = element.type;
    parameter.origin = out_.name;
    if (element.id) {
      parameter.id = ResolveId(*element.id);
      parameter.identifier = element.id->text;
    }
    NameParameter(&parameter);
    FillParameter(context_, element, &parameter);
    CheckNumber(element.place, parameter);
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
    parameter->longName = TextsOf(parameter->identifier).longText;
    parameter->shortName = TextsOf(parameter->identifier).shortText;
    const Texts* help = input_.help ? FindTexts(*input_.help, parameter->identifier) : nullptr;
    if (help) parameter->help = help->longText;
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

  void AddGroup(const ElementSyntax& element) {
    CheckRoom(element.place);
    if (element.id) {
      const std::int32_t id = ResolveId(*element.id);
      if (id <= 0) Fail(element.place, "a group's number must be above 0");
      // A group that is there already, as those of an included description, is opened again.
      if (out_.groups.insert(id).second) TextsOf(element.id->text);
    }
    const int outer = group_;
    group_ = OpenGroup(element);
    AddStatements(element.children);
    group_ = outer;
  }

  int FindGroup(std::int32_t id) const {
    const auto same = [id](const Group& group) { return group.id == id; };
    const auto found = std::find_if(out_.layout.begin(), out_.layout.end(), same);
    return id == 0 || found == out_.layout.end() ? -1 : int(found - out_.layout.begin());
  }

  int OpenGroup(const ElementSyntax& element) {
    Group group;
    group.parent = group_;
    if (element.id) {
      group.id = ResolveId(*element.id);
      const int known = FindGroup(group.id);
      if (known >= 0) return known;
      if (const Texts* texts = FindTexts(*input_.tables, element.id->text)) group.title = texts->longText;
    }
    for (const AttributeSyntax& attribute : element.attributes) {
      if (attribute.values.empty()) continue;
      if (attribute.info->keyword == std::string_view("COLUMNS"))
        group.columns = std::clamp(int(attribute.values[0].integer), 1, 16);
      if (attribute.info->attribute == Attribute::kDefault) group.isOpen = attribute.values[0].integer != 0;
    }
    out_.layout.push_back(std::move(group));
    return int(out_.layout.size()) - 1;
  }

  /** Adds the groups of an included description inside the open one; returns where each of them is now. */
  std::vector<int> IncludeGroups(const Description& included) {
    std::vector<int> places;
    for (Group group : included.layout) {
      group.parent = group.parent < 0 ? group_ : places[std::size_t(group.parent)];
      int place = FindGroup(group.id);
      if (place < 0) {
        place = int(out_.layout.size());
        out_.layout.push_back(std::move(group));
      }
      places.push_back(place);
    }
    return places;
  }

  void Include(const Token& name) {
    if (!included_.insert(name.text).second) Fail(name.place, name.text + " is included twice");
    std::string error;
    const Description* included = input_.include(name.text, &error);
    if (!included) Fail(name.place, "cannot include " + name.text + ": " + error);
    out_.symbols.Merge(included->symbols);
    out_.groups.insert(included->groups.begin(), included->groups.end());
    const std::vector<int> places = IncludeGroups(*included);
    for (Parameter parameter : included->parameters) {
      CheckRoom(name.place);
      parameter.group = parameter.group < 0 ? group_ : places[std::size_t(parameter.group)];
      Store(std::move(parameter));
    }
  }

  void SetHidden(const Token& name, bool hidden) {
    const std::int32_t id = ResolveId(name);
    auto* parameter = const_cast<Parameter*>(out_.FindParameter(id));
    if (!parameter && out_.groups.count(id) == 0)
      Fail(name.place, "'" + name.text + "' is not an element before this line");
    if (parameter) parameter->hidden = hidden;
  }

  const BuildInput& input_;
  Description& out_;
  ParameterContext context_;
  std::set<std::string> included_;
  int group_ = -1; // the open one
};

} // namespace

bool BuildDescription(const BuildInput& input, Description* description, std::string* error) {
  return CatchParseError(error, [&] { DescriptionBuilder(input, description).Build(); });
}

} // namespace host::resource
