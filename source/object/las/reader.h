// One LAS or LAZ file, checked and then read through LASlib, point by point in the order of the file.
#pragma once

#include "object/las/validator.h"

#include <memory>

namespace kelvra {

struct LasPoint {
  double x, y, z;              // file units: raw integer × scale + offset
  std::uint16_t r, g, b;       // 0 where the point format carries no colour
  std::uint8_t classification; // 0 to 31 in point formats 0 to 5, else 0 to 255
  bool keyPoint;               // bit 6 of the classification byte, or its equivalent in point formats 6 to 10
  std::uint8_t returnNumber;   // as in the file: 1 for the first return of a pulse
  std::uint16_t intensity;     // 0 unless Open was told that it is wanted
};

// At most one LasFile of a thread receives the library's messages: the one opened last.
class LasFile {
public:
  LasFile();
  ~LasFile();
  LasFile(const LasFile&) = delete;
  LasFile& operator=(const LasFile&) = delete;

  // Checks and opens the file, `path` being UTF-8. False when it is refused: Refusal() says why, in one
  // sentence without the file's name. Intensities of newer compressed files are decoded only where they are
  // wanted. May throw std::bad_alloc.
  enum Intensities { kSkipIntensities, kReadIntensities };
  bool Open(const std::string& path, Intensities intensities = kSkipIntensities);
  const std::string& Refusal() const { return refusal_; }

  // What the checks found. Its number of readable points bounds how often Next can return true.
  const LasFindings& Findings() const { return findings_; }
  bool HasColor() const;

  // Goes to the next point; false at the end of the file, after the last readable point, and where the
  // compressed bytes are damaged. The library must not be asked again after that, and it is not. May throw
  // std::bad_alloc; the file cannot be read on then.
  bool Next();
  // The point that Next went to. Precondition: the last call of Next returned true.
  void Get(LasPoint& point) const;

  // What the library printed so far, one line each, at most 16 lines.
  const std::vector<std::string>& LibraryMessages() const { return libraryMessages_; }

  // Whether this build can read LAS and LAZ at all.
  static bool Available();

private:
  struct Library;
  bool OpenLibrary(const std::string& path, Intensities intensities);
  static void OnMessage(void* context, const char* text);

  LasFindings findings_;
  std::string refusal_;
  std::vector<std::string> libraryMessages_;
  std::unique_ptr<FileBytes> file_;
  std::unique_ptr<Library> library_;
  std::uint64_t remaining_ = 0; // points that may still be asked for
  bool wantsIntensity_ = false;
};

} // namespace kelvra
