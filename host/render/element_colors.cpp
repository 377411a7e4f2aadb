#include "host/render/element_colors.h"

#include "host/base/module_scope.h"
#include "host/nodes/node.h"
#include "host/nodes/visible_objects.h"
#include "host/plugins/plugin_registry.h"

#include <cstring>

namespace host {

namespace {

/** What a node answers kMessageObjectType with; data is its record. */
struct HairPluginMessageData {
  LONG version = 1000;
  LONG size = sizeof(HairPluginMessageData);
  LONG flags = 0;
  void* data = nullptr;
};
static_assert(offsetof(HairPluginMessageData, data) == 2 * sizeof(void*), "the third pointer-sized field");

/** A record begins with version and size; calc_sample, the colour of one element, stands at this byte. */
constexpr LONG kRecordVersion = 1000;
constexpr std::size_t kCalcSample = 72;

ElementColors RecordOf(Node& shader) {
  HairPluginMessageData question;
  ElementColors colors;
  if (!SendMessage(shader, kMessageObjectType, &question) || !question.data) return colors;
  LONG head[2];
  std::memcpy(head, question.data, sizeof head);
  if (head[0] != kRecordVersion || head[1] < (LONG)(kCalcSample + sizeof(void*))) return colors;
  std::memcpy(&colors.color, (const char*)question.data + kCalcSample, sizeof colors.color);
  colors.shader = shader.data;
  return colors;
}

} // namespace

Vector ElementColors::At(LONG index) const {
  return CallModule("calc_sample", color, shader, index);
}

ElementColors FindElementColors(BaseObject* op) {
  for (BaseShader* shader = op->GetFirstShader(); shader; shader = shader->GetNext())
    if (const ElementColors colors = RecordOf(*Impl(shader))) return colors;
  return ElementColors();
}

ShaderStage::ShaderStage(BaseDocument* doc, const InitRenderStruct& irs) {
  VisitVisibleObjects(doc, [this, &irs](BaseObject* op, const Matrix&) {
    for (BaseShader* shader = op->GetFirstShader(); shader; shader = shader->GetNext()) {
      Node& node = *Impl(shader);
      if (!node.data || result_ != INITRENDERRESULT_OK) continue;
      ready_.push_back(shader);
      result_ = CallModule("InitRender", node.plugin->As<SHADERPLUGIN>().InitRender, node.data, shader, irs);
    }
  });
}

ShaderStage::~ShaderStage() {
  for (BaseShader* shader : ready_) {
    Node& node = *Impl(shader);
    CallModule("FreeRender", node.plugin->As<SHADERPLUGIN>().FreeRender, node.data, shader);
  }
}

} // namespace host
