// The words of the description grammar: element types, attributes, and which go together.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::resource {

enum class ElementType {
  kBool,
  kLong,
  kReal,
  kVector,
  kColor,
  kString,
  kFilename,
  kLink,
  kButton,
  kStaticText,
  kSeparator,
  kGroup,
  kBaseTime,
  kMatrix,
  kSpline,
  kGradient,
  kInExclude,
  kShaderLink,
};

/** What an element can carry: an attribute is legal where the masks meet. */
enum Capability : std::uint32_t {
  kLimitWords = 1,  // MIN, MAX and the like
  kDefaultWord = 2, // DEFAULT with a value
  kCycleWord = 4,   // a drop-down list
  kLinkWords = 8,   // ACCEPT, REFUSE
  kPathWords = 16,  // DIRECTORY, SAVE
  kLineWord = 32,   // a visible separator
  kGradientWords = 64,
  kGroupWords = 128, // children and their layout
  kCommonWords = 256 // every element
};

struct ElementInfo {
  const char* keyword;
  ElementType type;
  std::uint32_t capabilities;
  bool needsId;
};

enum class AttributeShape {
  kFlag,            // HIDDEN;
  kNumber,          // COLUMNS 2;
  kNumbers,         // MIN 0; or three numbers
  kOptionalNumbers, // MINEX; or MINEX 0;
  kChoice,          // UNIT METER;
  kName,            // CUSTOMGUI REALSLIDER;
  kId,              // PARENTID A;
  kOptionalId,      // PARENTCOLLAPSE; or PARENTCOLLAPSE A;
  kIdList,          // ACCEPT { Obase; }
  kCycleList,       // CYCLE { A; B~1000; -1; }
  kValue            // DEFAULT 1; an identifier, a text or three numbers
};

enum class Attribute {
  kMin,
  kMax,
  kMinExclusive,
  kMaxExclusive,
  kShownNumbers, // STEP and the ends of sliders: checked as the limits are
  kUnit,
  kCycle,
  kDefault,
  kHidden,
  kParentId,
  kAccept,
  kLayout // what else only a user interface reads
};

struct AttributeInfo {
  const char* keyword;
  Attribute attribute;
  AttributeShape shape;
  std::uint32_t capabilities; // legal on elements that have one of these
  std::vector<std::string_view> choices;
};

/** Null for words that are not element types or attributes. */
const ElementInfo* FindElement(std::string_view keyword);
const AttributeInfo* FindAttribute(std::string_view keyword);

const ElementInfo& InfoOf(ElementType type);

} // namespace host::resource
