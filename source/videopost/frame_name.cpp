#include "videopost/frame_name.h"

#include "host_text.h"

namespace kelvra {

namespace {

/** OpenEXR. A constant of our own: the release may not have a name for the format. */
constexpr LONG kFilterExr = 1016606;

struct KnownSuffix {
  const CHAR* text;
  FrameFormat format;
};
const KnownSuffix kSuffixes[] = {
    {"png", {FILTER_PNG, SAVEBIT_16BITCHANNELS}},
    {"tif", {FILTER_TIF, SAVEBIT_16BITCHANNELS}},
    {"tiff", {FILTER_TIF, SAVEBIT_16BITCHANNELS}},
    {"exr", {kFilterExr, SAVEBIT_32BITCHANNELS}},
};

const KnownSuffix* FindSuffix(const String& fileName) {
  const Filename name(fileName);
  for (const KnownSuffix& suffix : kSuffixes)
    if (name.CheckSuffix(suffix.text)) return &suffix;
  return NULL;
}

/** At least `digits` digits, and the sign of a frame below 0 in front of them. */
String Padded(LONG frame, LONG digits) {
  String text = LLongToString(frame < 0 ? -(LLONG)frame : (LLONG)frame);
  if (text.GetLength() < digits) text = String(digits - text.GetLength(), (UWORD)'0') + text;
  return frame < 0 ? String("-") + text : text;
}

String WithoutFolders(String name) {
  for (LONG i = 0; i < name.GetLength(); ++i)
    if (name[i] == '/' || name[i] == '\\' || name[i] == ':' || name[i] < ' ')
      name = SubText(name, 0, i) + "_" + SubText(name, i + 1, name.GetLength());
  return name;
}

} // namespace

FrameFormat FrameFormatOf(const String& fileName) {
  const KnownSuffix* suffix = FindSuffix(fileName);
  return suffix ? suffix->format : FrameFormat();
}

String FrameFileName(const String& pattern, LONG frame) {
  String name = WithoutFolders(pattern.Content() ? pattern : String(kDefaultPattern));
  if (!FindSuffix(name)) name += ".png";
  LONG last = 0, first = 0;
  if (name.FindLast((UWORD)'#', &last)) {
    for (first = last; first > 0 && name[first - 1] == '#';) --first;
    name.Delete(first, last - first + 1);
    name.Insert(first, Padded(frame, last - first + 1));
  } else {
    const LONG dot = name.GetLength() - Filename(name).GetSuffix().GetLength() - 1;
    name.Insert(dot, Padded(frame, 4));
  }
  return name;
}

} // namespace kelvra
