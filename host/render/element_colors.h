// Shaders that colour geometry element by element: one colour a point, by its number.
//
// An object carries such a shader in its list of shaders. The renderer asks it for its record with message
// kMessageObjectType and calls the function in the record from all render threads, between InitRender and
// FreeRender.
#pragma once

#include "c4d.h"

#include <vector>

namespace host {

/** As the hair system asks nodes; data is HairPluginMessageData. */
constexpr LONG kMessageObjectType = 1018952;

struct ElementColors {
  NodeData* shader = nullptr;
  Vector (*color)(NodeData* shader, LONG index) = nullptr;

  explicit operator bool() const { return color != nullptr; }
  Vector At(LONG index) const;
};

/** Of the first shader on the object that has a record; none otherwise. Main thread. */
ElementColors FindElementColors(BaseObject* op);

/** Shaders of the visible objects while a frame is rendered: InitRender, and FreeRender when it ends. */
class ShaderStage {
public:
  ShaderStage(BaseDocument* doc, const InitRenderStruct& irs);
  ~ShaderStage();
  ShaderStage(const ShaderStage&) = delete;
  ShaderStage& operator=(const ShaderStage&) = delete;
  INITRENDERRESULT Result() const { return result_; }

private:
  std::vector<BaseShader*> ready_;
  INITRENDERRESULT result_ = INITRENDERRESULT_OK;
};

} // namespace host
