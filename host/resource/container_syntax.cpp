#include "host/resource/container_syntax.h"

#include <algorithm>

namespace host::resource {
namespace {

class ContainerParser {
public:
  ContainerParser(std::string_view text, const std::string& file) : lexer_(text, file) {}

  void Parse(ContainerSyntax* container) {
    lexer_.ExpectKeyword("CONTAINER");
    container->name = lexer_.ExpectName("the description's name");
    lexer_.Expect('{');
    while (!lexer_.Peek().IsMark('}')) {
      if (lexer_.Peek().IsName("NAME")) {
        ParseTitle(container);
      } else {
        container->statements.push_back(ParseStatement(0));
      }
    }
    lexer_.Expect('}');
    lexer_.TakeIf(';');
    lexer_.ExpectEnd();
  }

private:
  void ParseTitle(ContainerSyntax* container) {
    const Token keyword = lexer_.Take();
    if (container->title.kind != TokenKind::kEnd) lexer_.FailAt(keyword.place, "NAME is given twice");
    container->title = lexer_.ExpectName("the title's identifier");
    lexer_.Expect(';');
  }

  Statement ParseStatement(int depth) {
    Statement statement;
    const Token keyword = lexer_.Peek();
    if (keyword.IsName("INCLUDE")) {
      statement.kind = StatementKind::kInclude;
    } else if (keyword.IsName("SHOW")) {
      statement.kind = StatementKind::kShow;
    } else if (keyword.IsName("HIDE")) {
      statement.kind = StatementKind::kHide;
    } else {
      statement.element = ParseElement(depth);
      return statement;
    }
    lexer_.Take();
    statement.name =
        statement.kind == StatementKind::kInclude ? lexer_.ExpectName("a description's name") : TakeId();
    lexer_.Expect(';');
    return statement;
  }

  ElementSyntax ParseElement(int depth) {
    const ElementInfo* info =
        lexer_.Peek().kind == TokenKind::kName ? FindElement(lexer_.Peek().text) : nullptr;
    if (!info) lexer_.FailExpected("an element type, INCLUDE, SHOW, HIDE, NAME or '}'");
    ElementSyntax element;
    element.type = info->type;
    element.place = lexer_.Take().place;
    if (!lexer_.Peek().IsMark('{') && !lexer_.Peek().IsMark(';')) {
      element.id = TakeId();
    } else if (info->needsId) {
      lexer_.FailExpected("an identifier for this " + std::string(info->keyword));
    }
    if (lexer_.TakeIf(';')) return element;
    lexer_.Expect('{');
    while (!lexer_.Peek().IsMark('}')) ParseBodyEntry(*info, depth, &element);
    lexer_.Expect('}');
    lexer_.TakeIf(';');
    return element;
  }

  void ParseBodyEntry(const ElementInfo& info, int depth, ElementSyntax* element) {
    const bool isName = lexer_.Peek().kind == TokenKind::kName;
    // In a group COLOR starts an element; in a gradient it is an attribute.
    const bool isGroup = info.type == ElementType::kGroup;
    const AttributeInfo* attribute = isName ? FindAttribute(lexer_.Peek().text) : nullptr;
    if (isGroup && (!attribute || FindElement(lexer_.Peek().text))) {
      if (depth + 1 >= kMaxGroupDepth) {
        lexer_.FailAt(lexer_.Peek().place, "groups are nested deeper than the " +
                                               std::to_string(kMaxGroupDepth) + " levels allowed");
      }
      element->children.push_back(ParseStatement(depth + 1));
      return;
    }
    if (!attribute) lexer_.FailExpected("an attribute or '}'");
    if (!(attribute->capabilities & info.capabilities)) {
      lexer_.FailAt(lexer_.Peek().place,
                    std::string(attribute->keyword) + " does not belong to a " + std::string(info.keyword));
    }
    AddAttribute(*attribute, element);
  }

  void AddAttribute(const AttributeInfo& info, ElementSyntax* element) {
    const Token keyword = lexer_.Take();
    const auto same = [&](const AttributeSyntax& given) { return given.info == &info; };
    if (std::any_of(element->attributes.begin(), element->attributes.end(), same)) {
      lexer_.FailAt(keyword.place, std::string(info.keyword) + " is given twice");
    }
    AttributeSyntax attribute;
    attribute.info = &info;
    attribute.place = keyword.place;
    ParseValues(info, &attribute);
    element->attributes.push_back(std::move(attribute));
  }

  void ParseValues(const AttributeInfo& info, AttributeSyntax* attribute) {
    switch (info.shape) {
    case AttributeShape::kFlag:
      break;
    case AttributeShape::kNumber:
      attribute->values.push_back(lexer_.ExpectInteger("a whole number"));
      break;
    case AttributeShape::kNumbers:
      TakeNumbers(attribute);
      break;
    case AttributeShape::kOptionalNumbers:
      if (!lexer_.Peek().IsMark(';')) TakeNumbers(attribute);
      break;
    case AttributeShape::kChoice:
      TakeChoice(info, attribute);
      break;
    case AttributeShape::kName:
      attribute->values.push_back(lexer_.ExpectName("a name"));
      break;
    case AttributeShape::kId:
      attribute->values.push_back(TakeId());
      break;
    case AttributeShape::kOptionalId:
      if (!lexer_.Peek().IsMark(';')) attribute->values.push_back(TakeId());
      break;
    case AttributeShape::kValue:
      TakeValue(attribute);
      break;
    case AttributeShape::kIdList:
      TakeIdList(attribute);
      return;
    case AttributeShape::kCycleList:
      TakeCycle(attribute);
      return;
    }
    lexer_.Expect(';');
  }

  Token TakeId() {
    if (lexer_.Peek().kind == TokenKind::kName) return lexer_.Take();
    return lexer_.ExpectInteger("an identifier or a whole number");
  }

  /** One number, or three for a vector. */
  void TakeNumbers(AttributeSyntax* attribute) {
    if (lexer_.Peek().kind != TokenKind::kNumber) lexer_.FailExpected("a number");
    while (lexer_.Peek().kind == TokenKind::kNumber && attribute->values.size() < 3) {
      attribute->values.push_back(lexer_.Take());
    }
    if (attribute->values.size() == 2) lexer_.FailExpected("a third number");
  }

  void TakeChoice(const AttributeInfo& info, AttributeSyntax* attribute) {
    std::string wanted;
    for (const std::string_view choice : info.choices) {
      if (lexer_.Peek().IsName(choice)) {
        attribute->values.push_back(lexer_.Take());
        return;
      }
      wanted += (wanted.empty() ? "one of " : ", ") + std::string(choice);
    }
    lexer_.FailExpected(wanted);
  }

  void TakeValue(AttributeSyntax* attribute) {
    const TokenKind kind = lexer_.Peek().kind;
    if (kind == TokenKind::kName || kind == TokenKind::kText) {
      attribute->values.push_back(lexer_.Take());
    } else {
      TakeNumbers(attribute);
    }
  }

  void TakeIdList(AttributeSyntax* attribute) {
    lexer_.Expect('{');
    while (!lexer_.TakeIf('}')) {
      attribute->values.push_back(TakeId());
      lexer_.Expect(';');
    }
    lexer_.TakeIf(';');
  }

  void TakeCycle(AttributeSyntax* attribute) {
    lexer_.Expect('{');
    while (!lexer_.TakeIf('}')) {
      CycleItem item{TakeId(), std::nullopt};
      if (lexer_.TakeIf('~')) item.icon = TakeId();
      attribute->cycle.push_back(std::move(item));
      lexer_.Expect(';');
    }
    lexer_.TakeIf(';');
  }

  Lexer lexer_;
};

} // namespace

bool ParseContainer(std::string_view text, const std::string& file, ContainerSyntax* container,
                    std::string* error) {
  return CatchParseError(error, [&] { ContainerParser(text, file).Parse(container); });
}

} // namespace host::resource
