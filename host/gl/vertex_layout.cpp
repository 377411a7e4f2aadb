#include "host/gl/vertex_layout.h"

#include <cctype>

namespace host::gl {

namespace {

/** Bytes from one record to the next. */
std::int64_t Step(const VertexAttribute& attribute) {
  return attribute.stride ? attribute.stride : attribute.components * ComponentSize(attribute.dataType);
}

bool IsShaderType(const std::string& type) {
  return type == "float" || type == "vec2" || type == "vec3" || type == "vec4";
}

std::string FirstFault(const VertexAttribute& attribute) {
  const auto outside = [](const char* field, std::int64_t value, const std::string& bound) {
    return std::string(field) + " " + std::to_string(value) + ", must be " + bound;
  };
  if (!IsIdentifier(attribute.name)) return "its name is not an identifier";
  if (!IsShaderType(attribute.type)) return "type " + attribute.type + ", must be float, vec2, vec3 or vec4";
  if (!ComponentSize(attribute.dataType))
    return outside("data type", attribute.dataType, "a plain type of GL");
  if (attribute.components < 1 || attribute.components > 4)
    return outside("component count", attribute.components, "1 to 4");
  if (attribute.stride < 0 || attribute.stride > kMaxStride)
    return outside("stride", attribute.stride, "0 to " + std::to_string(kMaxStride));
  if (attribute.offset < 0 || attribute.offset > INT32_MAX)
    return outside("offset", attribute.offset, "0 or more");
  if (attribute.location < -1 || attribute.location >= kMaxLocations)
    return outside("location", attribute.location, "-1 to " + std::to_string(kMaxLocations - 1));
  return "";
}

} // namespace

int ComponentSize(unsigned dataType) {
  static constexpr int kSizes[] = {1, 1, 2, 2, 4, 4, 4, 0, 0, 0, 8}; // GL_BYTE (0x1400) .. GL_DOUBLE (0x140a)
  return dataType >= 0x1400 && dataType <= 0x140a ? kSizes[dataType - 0x1400] : 0;
}

bool IsIdentifier(const std::string& name) {
  if (name.empty() || std::isdigit((unsigned char)name[0]) || name.compare(0, 3, "gl_") == 0) return false;
  for (const char c : name)
    if (!std::isalnum((unsigned char)c) && c != '_') return false;
  return true;
}

bool CheckLayout(const std::vector<VertexAttribute>& attributes, std::string* error) {
  if (attributes.size() > (std::size_t)kMaxLocations) {
    *error =
        std::to_string(attributes.size()) + " vertex attributes, at most " + std::to_string(kMaxLocations);
    return false;
  }
  std::string taken[kMaxLocations];
  for (const VertexAttribute& attribute : attributes) {
    std::string fault = FirstFault(attribute);
    if (fault.empty() && attribute.location >= 0) {
      std::string& owner = taken[attribute.location];
      if (!owner.empty())
        fault = "location " + std::to_string(attribute.location) + ", already taken by \"" + owner + "\"";
      owner = attribute.name;
    }
    if (fault.empty()) continue;
    *error = "vertex attribute \"" + attribute.name + "\": " + fault;
    return false;
  }
  return true;
}

void ResolveLocations(std::vector<VertexAttribute>* attributes) {
  bool taken[kMaxLocations] = {};
  for (const VertexAttribute& attribute : *attributes)
    if (attribute.location >= 0 && attribute.location < kMaxLocations) taken[attribute.location] = true;
  int next = 0;
  for (VertexAttribute& attribute : *attributes) {
    if (attribute.location >= 0) continue;
    while (next < kMaxLocations && taken[next]) ++next;
    if (next < kMaxLocations) attribute.location = next++;
  }
}

bool CheckBounds(const std::vector<VertexAttribute>& attributes, std::int64_t vertexCount,
                 std::uint64_t bytes, std::string* error) {
  if (vertexCount <= 0) return true;
  for (const VertexAttribute& attribute : attributes) {
    // Below 2^31 vertices of at most 2048 bytes: no overflow.
    const std::uint64_t end = (std::uint64_t)(attribute.offset + (vertexCount - 1) * Step(attribute) +
                                              attribute.components * ComponentSize(attribute.dataType));
    if (end <= bytes) continue;
    *error = "draw of " + std::to_string(vertexCount) + " vertices needs " + std::to_string(end) +
             " bytes for attribute \"" + attribute.name + "\", the buffer holds " + std::to_string(bytes);
    return false;
  }
  return true;
}

} // namespace host::gl
