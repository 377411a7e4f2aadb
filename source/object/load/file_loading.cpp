#include "object/load/file_loading.h"

#include "object/load/loaded_file.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kelvra {

namespace {

const LONG kDefaultBudget = 100; ///< millions, where the object has no entry
const LLONG kMillion = 1000000;
/** GeoKey value of a system that the file defines itself: no number to reproject with. */
const LONG kUserDefinedSystem = 32767;

std::string Utf8(const String& text) {
  std::string bytes((std::size_t)text.GetCStringLen(STRINGENCODING_UTF8) + 1, '\0');
  bytes.resize((std::size_t)text.GetCString(&bytes[0], (LONG)bytes.size(), STRINGENCODING_UTF8));
  return bytes;
}

void PrintLine(const std::string& path, const std::string& text) {
  GePrint(String((path + ": " + text).c_str(), STRINGENCODING_UTF8));
}

/** Compares a path's suffix without regard to the case of ASCII letters; needs no memory of the host. */
bool HasSuffix(const std::string& path, const std::string& suffix) {
  if (path.size() <= suffix.size() || path[path.size() - suffix.size() - 1] != '.') return false;
  return std::equal(suffix.begin(), suffix.end(), path.end() - (std::ptrdiff_t)suffix.size(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? (char)(b + 32) : b); });
}

struct NamedFile {
  Filename name;
  std::string path; ///< UTF-8
};

/** Files of a folder by name in byte order: no folders, no hidden files, no index or waveform companions. */
std::vector<NamedFile> FilesOf(const Filename& folder) {
  std::vector<NamedFile> files;
  AutoAlloc<BrowseFiles> browse;
  if (!browse) return files;
  browse->Init(folder, 0);
  while (browse->GetNext()) {
    const Filename name = browse->GetFilename();
    if (browse->IsDir() || browse->IsHidden() || name.CheckSuffix("lax") || name.CheckSuffix("wdp")) continue;
    const Filename full = folder + name;
    files.push_back({full, Utf8(full.GetString())});
  }
  std::sort(files.begin(), files.end(),
            [](const NamedFile& a, const NamedFile& b) { return a.path < b.path; });
  return files;
}

LoadOptions ReadOptions(BaseObject* op) {
  const BaseContainer* data = op->GetDataInstance();
  LoadOptions options;
  options.size = data->GetReal(KELVRA_OBJECT_SIZE);
  options.budget = data->GetLong(KELVRA_LOAD_BUDGET, kDefaultBudget);
  options.limit = (LLONG)options.budget * kMillion;
  options.everyNth = LMax(1, data->GetLong(KELVRA_LOAD_NTH, 1));
  return options;
}

/** Distance between neighbouring 32-bit floats where the cloud is farthest from zero. */
double StoredStep(const PointBlock& block) {
  double farthest = 0.0;
  for (LONG axis = 0; axis < 3; ++axis)
    farthest = std::max({farthest, std::abs(block.bboxMin[axis]), std::abs(block.bboxMax[axis])});
  const float f = (float)farthest;
  return (double)(std::nextafter(f, HUGE_VALF) - f);
}

std::string Number(double value, const char* format) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

/** The line of a file that gave points. */
std::string Summary(const LoadedFile& file, double seconds) {
  const std::string points = Grouped(file.block.count);
  std::string line =
      file.partial ? "loaded " + points + " of " + Grouped(file.announced) + " points" : points + " points";
  line += ", " + Number(seconds, "%.2f") + " s";
  if (seconds > 0.0) line += ", " + Number(file.block.count / seconds / 1e6, "%.1f") + " M points/s";
  line += ", positions are stored to " + Number(StoredStep(file.block), "%.2g") + " m";
  const LONG step = file.block.settings.reader.everyNth;
  if (step > 1) line += ", 1 of " + Grouped(step) + " kept";
  if (!file.detail.empty()) line += ", " + file.detail;
  return line;
}

/** Loads the files of one command: the first block opens the command's group. */
class LoadCommand {
public:
  LoadCommand(BaseObject* op, PointStore& store) : op_(op), store_(store), options_(ReadOptions(op)) {}

  /** FALSE when the user stopped: nothing of the file was loaded. */
  Bool Load(const NamedFile& file) {
    const LReal start = GeGetMilliSeconds();
    LoadedFile loaded;
    if (HasSuffix(file.path, "las") || HasSuffix(file.path, "laz"))
      LoadLasFile(file.path, options_, loaded);
    else
      LoadTextFile(file.name, file.path, HasSuffix(file.path, "pts"), options_, loaded);
    Report(file, loaded, (GeGetMilliSeconds() - start) / 1000.0);
    return !loaded.stopped;
  }

private:
  void Report(const NamedFile& file, LoadedFile& loaded, double seconds) {
    if (!loaded.refusal.empty()) PrintLine(file.path, loaded.refusal);
    if (loaded.block.count < 1) return;
    const std::string summary = Summary(loaded, seconds);
    const LONG key = loaded.block.header.key;
    loaded.block.Finish(kFinishRecomputeBox);
    if (key > 1) loaded.block.Finish(kFinishRecomputeBox);
    if (!Merge(loaded.block)) {
      PrintLine(file.path, kNoMemory);
      return;
    }
    PrintLine(file.path, summary);
    for (const std::string& note : loaded.notes) PrintLine(file.path, note);
    if (key > 1 && CountBlocks() == 1) op_->GetDataInstance()->SetString(KELVRA_EPSG, LongToString(key));
    if (loaded.geoKeyCode > 0 && loaded.geoKeyCode != kUserDefinedSystem)
      PrintLine(file.path, "EPSG " + std::to_string(loaded.geoKeyCode) + " found; enter it to reproject");
  }

  Bool Merge(PointBlock& block) {
    if (!opened_) {
      RecordUndo(op_);
      PointGroup group;
      if (!store_.Merge(group)) return FALSE;
      opened_ = TRUE;
    }
    GeDynamicArray<PointBlock>& blocks = store_.groups[store_.groups.GetCount() - 1].blocks;
    const VLONG last = blocks.GetCount();
    if (!blocks.ReSize(last + 1)) {
      if (last == 0) CloseEmptyGroup();
      return FALSE;
    }
    blocks[last] = static_cast<PointBlock&&>(block);
    store_.uploadFlag = 1;
    return TRUE;
  }

  void CloseEmptyGroup() {
    store_.groups.ReSize(store_.groups.GetCount() - 1);
    opened_ = FALSE;
  }

  VLONG CountBlocks() const {
    VLONG count = 0;
    for (VLONG g = 0; g < store_.groups.GetCount(); ++g) count += store_.groups[g].blocks.GetCount();
    return count;
  }

  BaseObject* op_;
  PointStore& store_;
  LoadOptions options_;
  Bool opened_ = FALSE;
};

} // namespace

bool UserStopped() {
  BaseThread* work = GeGetCurrentThread();
  return work && work->TestBreak();
}

void ShowLoading(LLONG index, LLONG total, LONG percent) {
  StatusSetBar(percent);
  StatusSetText(String("Loading : ") + LLongToString(index) + " of " + LLongToString(total));
}

std::string Grouped(LLONG number) {
  std::string digits = std::to_string(number);
  for (int at = (int)digits.size() - 3; at > (number < 0 ? 1 : 0); at -= 3)
    digits.insert((std::size_t)at, ",");
  return digits;
}

void RecordUndo(BaseObject* op) {
  BaseDocument* doc = op->GetDocument();
  if (!doc) return;
  doc->StartUndo();
  doc->AddUndo(UNDOTYPE_CHANGE, op);
  doc->EndUndo();
}

void LoadFiles(BaseObject* op, PointStore& store, Bool folderMode) {
  Filename chosen;
  if (!chosen.FileSelect(FILESELECTTYPE_ANYTHING, folderMode ? FILESELECT_DIRECTORY : FILESELECT_LOAD,
                         "Point Cloud"))
    return;
  const std::vector<NamedFile> files =
      folderMode ? FilesOf(chosen) : std::vector<NamedFile>{{chosen, Utf8(chosen.GetString())}};
  if (files.empty()) PrintLine(Utf8(chosen.GetString()), "the folder holds no file to load");
  LoadCommand command(op, store);
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (!UserStopped() && command.Load(files[i])) continue;
    const std::size_t more = files.size() - i - 1;
    PrintLine(files[i].path,
              "stopped; nothing of it was loaded" +
                  (more ? "; " + Grouped((LLONG)more) + " more files were not loaded" : std::string()));
    break;
  }
  StatusClear();
  op->Message(MSG_UPDATE);
  EventAdd();
}

} // namespace kelvra
