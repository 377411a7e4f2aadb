#include "cli/commands/render/frames.h"

#include "cli/commands/render/scene_setup.h"

#include <stdexcept>

namespace cli {

host::ViewCamera GoToFrame(CloudSession& session, const RenderPlan& plan, const host::ViewCamera& camera,
                           int frame) {
  BaseDocument* doc = session.Document();
  doc->SetTime(BaseTime((Real)frame, (Real)doc->GetFps()));
  const FrameRange frames = plan.Frames();
  const double share = frames.Count() > 1 ? (double)(frame - frames.first) / (frames.Count() - 1) : 0.0;
  for (const MovingSetting& setting : plan.moving) session.ApplySetting(setting.At(share));
  return host::TurnedCamera(camera, plan.turn * ((double)(frame - frames.first) / frames.Count()));
}

host::Picture PictureOf(const host::RenderBuffer& buffer) {
  host::Picture picture;
  picture.width = buffer.Width();
  picture.height = buffer.Height();
  picture.channels = 3;
  picture.samples.reserve((std::size_t)picture.width * picture.height * 3);
  for (std::size_t i = 0; i < buffer.Samples().size(); i += host::RenderBuffer::kComponents)
    picture.samples.insert(picture.samples.end(), &buffer.Samples()[i], &buffer.Samples()[i] + 3);
  return picture;
}

void SaveFrame(CloudSession& session, const host::Picture& picture, const std::string& name,
               host::PictureFormat format) {
  std::string error;
  if (!host::SavePicture(picture, name, format, &error, &session.App().GetFaults()))
    throw std::runtime_error(error);
}

} // namespace cli
