#include "c4d_os.h"

#include <cmath>

void GePrint(const String& text) {
  C4DOS.general->Print(text);
}
void StatusSetText(const String& text) {
  C4DOS.general->StatusSetText(text);
}
void StatusSetBar(LONG percent) {
  C4DOS.general->StatusSetBar(percent);
}
void StatusClear() {
  C4DOS.general->StatusClear();
}
GEMB_R GeOutString(const String& text, GEMB flags) {
  return C4DOS.general->OutString(text, flags);
}
void MessageDialog(const String& text) {
  C4DOS.general->OutString(text, GEMB_OK);
}
Bool QuestionDialog(const String& text) {
  return C4DOS.general->OutString(text, GEMB_YESNO | GEMB_ICONQUESTION) == GEMB_R_YES;
}
void EventAdd(EVENT flags) {
  C4DOS.general->EventAdd(flags);
}
BaseThread* GeGetCurrentThread() {
  return C4DOS.general->GetCurrentThread();
}
Bool GeIsMainThread() {
  return C4DOS.general->IsMainThread();
}
void StopAllThreads() {
  C4DOS.general->StopAllThreads();
}
LONG GeGetCPUCount() {
  return C4DOS.general->GetCPUCount();
}
LONG GeGetTimer() {
  return (LONG)std::fmod(C4DOS.general->GetMilliSeconds(), 2147483647.0);
}
LReal GeGetMilliSeconds() {
  return C4DOS.general->GetMilliSeconds();
}
LONG GetC4DVersion() {
  return C4DOS.general->GetC4DVersion();
}
BaseContainer* GetWorldPluginData(LONG id) {
  return C4DOS.general->GetWorldPluginData(id);
}
Bool SetWorldPluginData(LONG id, const BaseContainer& bc, Bool add) {
  return C4DOS.general->SetWorldPluginData(id, bc, add);
}
BaseContainer* GetWorldContainerInstance() {
  return C4DOS.general->GetWorldContainerInstance();
}

namespace {

/** Transfer functions of sRGB, IEC 61966-2-1. */
Real ToLinear(Real c) {
  return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}
Real ToSrgb(Real c) {
  return c <= 0.0031308 ? c * 12.92 : 1.055 * std::pow(c, 1.0 / 2.4) - 0.055;
}

} // namespace

Vector TransformColor(const Vector& color, COLORSPACETRANSFORMATION transformation) {
  if (transformation == COLORSPACETRANSFORMATION_SRGB_TO_LINEAR)
    return Vector(ToLinear(color.x), ToLinear(color.y), ToLinear(color.z));
  if (transformation == COLORSPACETRANSFORMATION_LINEAR_TO_SRGB ||
      transformation == COLORSPACETRANSFORMATION_LINEAR_TO_VIEW)
    return Vector(ToSrgb(color.x), ToSrgb(color.y), ToSrgb(color.z));
  return color;
}

GeData StringToNumber(const String& text, LONG format, LONG) {
  const Real value = text.ToReal();
  return format == FORMAT_LONG ? GeData((LONG)FCut(value, (Real)MINLONGl, (Real)MAXLONGl)) : GeData(value);
}

GeResource resource;

Bool GeResource::Init() {
  return Init(GeGetPluginResourcePath());
}

Bool GeResource::Init(const Filename& path) {
  if (initialised_) return resource_ != NULL;
  initialised_ = TRUE;
  resource_ = C4DOS.resource->Load(path);
  return resource_ != NULL;
}

const String& GeResource::LoadString(LONG id) {
  static const String none;
  return resource_ ? *C4DOS.resource->LoadString(resource_, id) : none;
}

void GeResource::Free() {
  if (resource_) C4DOS.resource->Free(resource_);
  resource_ = NULL;
  initialised_ = FALSE;
}

const String& GeLoadString(LONG id) {
  return resource.LoadString(id);
}

namespace {

Filename& PluginFile() {
  static Filename file;
  return file;
}

} // namespace

namespace sdk {

void SetPluginFile(const Filename& file) {
  PluginFile() = file;
}

} // namespace sdk

Filename GeGetPluginPath() {
  return PluginFile().GetDirectory();
}
Filename GeGetPluginResourcePath() {
  return GeGetPluginPath() + Filename("res");
}
