#include "cli/commands/render/recorder.h"

#include "cli/commands/options/frame_range.h"
#include "host/render.h"
#include "kelvra_messages.h"

#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

constexpr const char* kPattern = "frame_####.png";

bool TimeOf(const std::string& path, fs::file_time_type* written) {
  std::error_code code;
  *written = fs::last_write_time(fs::u8path(path), code);
  return !code;
}

} // namespace

std::string RecordName(int frame) {
  return FrameName(kPattern, frame);
}

void EnableRecorder(BaseDocument* doc, const std::string& folder) {
  RenderData* settings = doc->GetActiveRenderData();
  host::AddInherentVideoPosts(*host::Impl(settings));
  for (BaseVideoPost* post = settings->GetFirstVideoPost(); post; post = post->GetNext())
    if (post->GetType() == KELVRA_RECORDER) {
      BaseContainer* data = post->GetDataInstance();
      data->SetBool(KELVRA_RECORDER_ENABLE, TRUE);
      data->SetFilename(KELVRA_RECORDER_FOLDER, Filename(String(folder.c_str(), STRINGENCODING_UTF8)));
      data->SetString(KELVRA_RECORDER_NAME, kPattern);
      return;
    }
  throw std::runtime_error("the module has no render recorder");
}

RecordWatch::RecordWatch(const std::string& folder, int frame) {
  if (folder.empty()) return;
  path_ = (fs::u8path(folder) / RecordName(frame)).u8string();
  existed_ = TimeOf(path_, &written_);
}

bool RecordWatch::Stored() const {
  fs::file_time_type written;
  return path_.empty() || (TimeOf(path_, &written) && (!existed_ || written != written_));
}

} // namespace cli
