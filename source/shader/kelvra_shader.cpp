#include "shader/kelvra_shader.h"

#include "version.h"
#include "xkelvra_shader.h"

namespace kelvra {

namespace {

constexpr LONG kLookupVersion = 1000;

} // namespace

LAZrayShader::LAZrayShader() {
  ClearMem(&lookup_, sizeof lookup_);
  lookup_.version = kLookupVersion;
  lookup_.size = sizeof lookup_;
}

Bool LAZrayShader::Init(GeListNode*) {
  lookup_.color = &ColorAt;
  return TRUE;
}

Bool LAZrayShader::Message(GeListNode* node, LONG type, void* data) {
  if (type != kMessageGetLookup || !data) return ShaderData::Message(node, type, data);
  static_cast<LookupMessage*>(data)->record = &lookup_;
  return TRUE;
}

INITRENDERRESULT LAZrayShader::InitRender(BaseShader* shader, const InitRenderStruct& irs) {
  BaseObject* cloud = shader->GetDataInstance()->GetObjectLink(KELVRA_SHADER_OBJECT, irs.doc);
  if (!cloud) return INITRENDERRESULT_OK;
  FreeColors();
  cloud->Message(kMessageExportColors, &colors_);
  return INITRENDERRESULT_OK;
}

Vector LAZrayShader::ColorAt(LAZrayShader* shader, LONG index) noexcept {
  const PointArray& colors = shader->colors_;
  return colors.data && index >= 0 && index < colors.count ? colors.data[index] : Vector(1.0);
}

void LAZrayShader::FreeColors() {
  colors_.count = 0;
  GeFree(colors_.data);
}

Bool RegisterRayShader() {
  return RegisterShaderPlugin(kRayShaderId, GeLoadString(kStringShader), 0, LAZrayShader::Alloc,
                              "XKelvra_Shader", 0);
}

} // namespace kelvra
