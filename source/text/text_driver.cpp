#include "text/text_driver.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

namespace kelvra {

namespace {

/** Bytes asked for at a time. */
const std::size_t kChunk = 256 * 1024;
const std::size_t kShownBytes = 60;

/** Which form the file's lines have, once one was accepted. */
enum class Form { Any, Extended, Plain };

class Driver {
public:
  Driver(const TextLoader& loader, const TextInput& input) : loader_(loader), input_(input) {
    std::memset(static_cast<void*>(&scratch_), 0, sizeof scratch_);
  }

  TextResult Run() {
    // One byte more: each line is closed with a NUL in place.
    const std::unique_ptr<char[]> buffer(new char[kChunk + kMostLineBytes + 2]);
    std::size_t held = 0;
    bool skipping = false, first = true;
    while (!result_.stopped) {
      const std::size_t got = input_.read(buffer.get() + held, kChunk);
      if (got == 0) break;
      std::size_t start = first ? SkipMark(buffer.get(), held + got) : 0;
      first = false;
      const std::size_t end = held + got;
      for (char* newline; (newline = (char*)std::memchr(buffer.get() + start, '\n', end - start));) {
        *newline = 0;
        const std::size_t length = (std::size_t)(newline - buffer.get()) - start;
        Line(buffer.get() + start, length, skipping);
        skipping = false;
        start += length + 1;
        if (result_.stopped) break;
      }
      held = end - start;
      std::memmove(buffer.get(), buffer.get() + start, held);
      if (held > kMostLineBytes) { // too long to be a point: drop what is there, reject at its end
        bytesDone_ += (std::int64_t)held;
        held = 0;
        skipping = true;
      }
    }
    if ((held > 0 || skipping) && !result_.stopped) {
      buffer[held] = 0;
      Line(buffer.get(), held, skipping);
    }
    return result_;
  }

private:
  /** A UTF-8 byte-order mark is no part of the first line; files of 16-bit text are told, not read. */
  std::size_t SkipMark(const char* text, std::size_t size) {
    result_.looksUtf16 =
        size >= 2 && (std::memcmp(text, "\xFF\xFE", 2) == 0 || std::memcmp(text, "\xFE\xFF", 2) == 0);
    return size >= 3 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0 ? 3 : 0;
  }

  void Line(char* line, std::size_t length, bool tooLong) {
    ++result_.lines;
    bytesDone_ += (std::int64_t)length + 1;
    // Thinning counts lines, headers too.
    const std::int32_t t = counter_ >= input_.everyNth ? 0 : counter_;
    counter_ = t + 1;
    if (t == 0) {
      if (result_.firstLine.empty()) Remember(line, length);
      if (tooLong || length > kMostLineBytes || !Parse(line, (std::int32_t)length))
        Reject();
      else
        Accept();
    }
    Progress();
  }

  void Remember(const char* line, std::size_t length) {
    const std::string text(line, std::min(length, kShownBytes));
    const std::size_t last = text.find_last_not_of(" \t\r");
    if (last != std::string::npos) result_.firstLine = text.substr(0, last + 1);
  }

  bool Parse(const char* line, std::int32_t length) {
    if (form_ == Form::Extended) return loader_.ParseExtended(line, length, scratch_);
    if (form_ == Form::Plain) return loader_.ParsePlain(line, length, scratch_);
    if (loader_.ParseColored(line, length, scratch_)) return true;
    // The state never goes back: a file whose first data line has three columns is plain to its end.
    if (loader_.ParseExtended(line, length, scratch_)) {
      form_ = Form::Extended;
      return true;
    }
    if (!loader_.ParsePlain(line, length, scratch_)) return false;
    form_ = Form::Plain;
    return true;
  }

  void Reject() {
    if (result_.rejected++ == 0) result_.firstRejected = result_.lines;
  }

  void Accept() {
    if (scratch_.z <= kNoDataHeight) {
      ++result_.noData;
      return;
    }
    const double p[3] = {scratch_.x, scratch_.y, scratch_.z};
    if (!std::isfinite((float)p[0]) || !std::isfinite((float)p[1]) || !std::isfinite((float)p[2])) {
      ++result_.notFinite;
      return;
    }
    for (int axis = 0; axis < 3; ++axis) {
      result_.min[axis] = anyBounds_ ? std::min(result_.min[axis], p[axis]) : p[axis];
      result_.max[axis] = anyBounds_ ? std::max(result_.max[axis], p[axis]) : p[axis];
    }
    anyBounds_ = true;
    if (result_.count >= capacity_ && !Grow()) {
      ++result_.noMemory;
      return;
    }
    result_.points[result_.count++] = scratch_;
  }

  /** The next request doubles whether this one succeeds or not. */
  bool Grow() {
    const std::int64_t wanted = growth_;
    const std::int64_t most = std::numeric_limits<std::int64_t>::max() / (std::int64_t)sizeof(TextPoint) / 2;
    if (growth_ <= most) growth_ *= 2;
    if (wanted > most || result_.count == std::numeric_limits<std::int32_t>::max()) return false;
    void* moved = input_.reallocate(result_.points, (std::size_t)wanted * sizeof(TextPoint));
    if (!moved) return false;
    result_.points = (TextPoint*)moved;
    capacity_ = wanted;
    return true;
  }

  /** Most lines end before the next thousandth begins: one comparison. */
  void Progress() {
    if (bytesDone_ < nextShown_) return;
    const std::int64_t size = input_.fileSize;
    if (!input_.progress || size <= 0) {
      nextShown_ = std::numeric_limits<std::int64_t>::max();
      return;
    }
    const int thousandths =
        (int)std::min<std::int64_t>(1000, (std::int64_t)((double)bytesDone_ / (double)size * 1000.0));
    // A little early is harmless: a value that is shown already is not shown again.
    nextShown_ = thousandths == 1000 ? std::numeric_limits<std::int64_t>::max()
                                     : (std::int64_t)((double)size / 1000.0 * (thousandths + 1)) - 1;
    if (thousandths == shown_) return;
    shown_ = thousandths;
    result_.stopped = !input_.progress(thousandths);
  }

  const TextLoader& loader_;
  const TextInput& input_;
  TextResult result_;
  TextPoint scratch_;
  Form form_ = Form::Any;
  std::int32_t counter_ = 0;
  std::int64_t capacity_ = 0, growth_ = kFirstGrowth, bytesDone_ = 0, nextShown_ = 0;
  int shown_ = -1;
  bool anyBounds_ = false;
};

} // namespace

TextResult LoadText(const TextLoader& loader, const TextInput& input) {
  return Driver(loader, input).Run();
}

} // namespace kelvra
