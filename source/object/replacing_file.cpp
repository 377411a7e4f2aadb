#include "object/replacing_file.h"

namespace kelvra {

namespace {

/** A name beside the file that nothing has. */
Filename FreeNameBeside(const Filename& name, const String& suffix) {
  const String first = name.GetString() + suffix;
  Filename beside(first);
  for (LONG number = 2; GeFExist(beside) || GeFExist(beside, TRUE); ++number)
    beside = Filename(first + LongToString(number));
  return beside;
}

/** Replaces a file where the host does not rename over it: it steps aside until the new one has its name. */
Bool ReplaceInTwoSteps(const Filename& finished, const Filename& name, String* reason) {
  const Filename aside = FreeNameBeside(name, ".old");
  *reason = "the earlier file cannot be replaced and is as it was; is it read-only or open elsewhere?";
  if (!GeFRename(name, aside)) return FALSE;
  if (GeFRename(finished, name)) {
    GeFKill(aside, 0);
    return TRUE;
  }
  if (!GeFRename(aside, name))
    *reason = "the new file cannot get this name; the earlier one is now " + aside.GetString();
  return FALSE;
}

} // namespace

Filename PartNameOf(const Filename& name) {
  return FreeNameBeside(name, ".part");
}

Bool ReplaceFile(const Filename& finished, const Filename& name, String* reason) {
  if (GeFRename(finished, name)) return TRUE;
  if (GeFExist(name)) {
    if (ReplaceInTwoSteps(finished, name, reason)) return TRUE;
  } else {
    *reason = GeFExist(name, TRUE) ? "a folder has this name" : "the new file cannot get this name";
  }
  GeFKill(finished, 0);
  return FALSE;
}

} // namespace kelvra
