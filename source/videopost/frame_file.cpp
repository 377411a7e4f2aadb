#include "videopost/frame_file.h"

#include "object/replacing_file.h"
#include "videopost/frame_name.h"

namespace kelvra {

namespace {

/** Copies red, green and blue of all lines; NULL with the reason. The caller frees the picture. */
MultipassBitmap* CopyPicture(VPBuffer& rendered, String* reason) {
  const LONG width = rendered.GetBw(), height = rendered.GetBh(), components = rendered.GetCpp();
  if (width < 1 || height < 1 || components < 3) {
    *reason = "the rendered picture has " + LongToString(width) + " x " + LongToString(height) +
              " pixels of " + LongToString(components) + " components, expected 3 or more";
    return NULL;
  }
  AutoFree<MultipassBitmap> picture(MultipassBitmap::Alloc(width, height, COLORMODE_RGBw));
  UWORD* line = GeAllocTypeNC(UWORD, (VLONG)width * components);
  Bool ok = picture != NULL && line != NULL;
  if (!ok)
    *reason = "not enough memory for " + LongToString(width) + " x " + LongToString(height) + " pixels";
  for (LONG y = 0; ok && y < height; ++y) {
    ok = rendered.GetLine(0, y, width, line, 16, TRUE) &&
         picture->SetPixelCnt(0, y, width, reinterpret_cast<UCHAR*>(line), components * (LONG)sizeof(UWORD),
                              COLORMODE_RGBw, PIXELCNT_0);
    if (!ok) *reason = "line " + LongToString(y) + " of the rendered picture cannot be read";
  }
  GeFree(line);
  return ok ? picture.Release() : NULL;
}

String ReasonOf(IMAGERESULT result) {
  switch (result) {
  case IMAGERESULT_NOTEXISTING:
    return "the folder does not exist";
  case IMAGERESULT_WRONGTYPE:
    return "the application does not save this format";
  case IMAGERESULT_OUTOFMEMORY:
    return "not enough memory";
  default:
    return "the disk is full or the folder cannot be written (result " + LongToString(result) + ")";
  }
}

Bool SavePictureWhole(const BaseBitmap& picture, const Filename& file, String* reason) {
  const FrameFormat format = FrameFormatOf(file.GetFileString());
  const Filename part = PartNameOf(file);
  const IMAGERESULT saved = picture.Save(part, format.filter, NULL, format.savebits);
  if (saved == IMAGERESULT_OK) return ReplaceFile(part, file, reason);
  *reason = ReasonOf(saved);
  if (GeFExist(part)) GeFKill(part, 0);
  return FALSE;
}

} // namespace

Bool SaveFrame(VPBuffer& rendered, const Filename& file, String* problem) {
  String reason;
  const AutoFree<MultipassBitmap> picture(CopyPicture(rendered, &reason));
  if (picture && SavePictureWhole(*picture, file, &reason)) return TRUE;
  *problem = file.GetString() + ": the frame is not recorded: " + reason;
  return FALSE;
}

} // namespace kelvra
