// The shape of a description file, before its identifiers have numbers.
#pragma once

#include "host/resource/keywords.h"
#include "host/resource/lexer.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::resource {

/** Groups may nest this deep; a file that goes deeper is refused. */
constexpr int kMaxGroupDepth = 32;

struct CycleItem {
  Token id; // a name, or a number
  std::optional<Token> icon;
};

struct AttributeSyntax {
  const AttributeInfo* info = nullptr;
  Place place;
  std::vector<Token> values;
  std::vector<CycleItem> cycle;
};

struct Statement;

struct ElementSyntax {
  ElementType type = ElementType::kGroup;
  Place place;
  std::optional<Token> id; // a name or a number
  std::vector<AttributeSyntax> attributes;
  std::vector<Statement> children; // of a group
};

enum class StatementKind { kElement, kInclude, kShow, kHide };

struct Statement {
  StatementKind kind = StatementKind::kElement;
  Token name;            // of INCLUDE, SHOW and HIDE
  ElementSyntax element; // of kElement
};

struct ContainerSyntax {
  Token name;  // after CONTAINER
  Token title; // after NAME; its kind is kEnd when there is none
  std::vector<Statement> statements;
};

/** Reads `CONTAINER Name { ... }`. Returns false with "file:line:column: expected ..., found ..." in `error`.
 */
bool ParseContainer(std::string_view text, const std::string& file, ContainerSyntax* container,
                    std::string* error);

} // namespace host::resource
