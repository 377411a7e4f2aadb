#include "text/text_driver.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

namespace kelvra {

namespace {

/** Bytes asked for at a time. */
constexpr std::size_t kChunk = 64 * 1024;
/** A look at the encoding takes these, however few each read gives. */
constexpr std::size_t kMarkBytes = 4;
constexpr std::size_t kShownBytes = 60;
/** Bytes of "1 2 3" and its line feed: no line with a point is shorter. */
constexpr std::int64_t kShortestLine = 6;

/** Which form the file's lines have, once one was accepted. */
enum class Form { Any, Extended, Plain };

class Driver {
public:
  Driver(const TextLoader& loader, const TextInput& input)
      : loader_(loader),
        input_(input),
        pts_(loader.FormatFlag() != 0),
        odd_(pts_),
        growth_(input.firstGrowth) {
    std::memset(static_cast<void*>(&scratch_), 0, sizeof scratch_);
  }

  TextResult Run() {
    while (!Ended() && Fill()) Lines();
    if ((held_ > 0 || skipping_) && !Ended()) { // no line feed at the end of the file
      buffer_[held_] = 0;
      Line(buffer_.get(), held_);
    }
    result_.odd = odd_.Take();
    return std::move(result_); // a copy could be refused memory, and its points would be lost
  }

private:
  bool Ended() const { return result_.stopped || result_.full; }

  /** Reads on behind the part of a line that is held; false at the end of the file. */
  bool Fill() {
    char* const free = buffer_.get() + held_;
    filled_ = held_;
    std::size_t got = input_.read(free, kChunk);
    if (!begun_) {
      for (std::size_t more = got; more > 0 && got < kMarkBytes; got += more)
        more = input_.read(free + got, kChunk - got);
      start_ = SkipMark(free, got);
      begun_ = true;
    }
    filled_ += got;
    return got > 0;
  }

  /** Takes each whole line of the buffer, then moves the rest to its front. */
  void Lines() {
    char* const buffer = buffer_.get();
    std::size_t from = std::max(start_, held_); // what was held has no line feed
    while (char* const lineFeed = (char*)std::memchr(buffer + from, '\n', filled_ - from)) {
      *lineFeed = 0;
      const std::size_t length = (std::size_t)(lineFeed - buffer) - start_;
      Line(buffer + start_, length);
      from = start_ += length + 1;
      if (Ended()) return;
    }
    held_ = filled_ - start_;
    if (start_ > 0) std::memmove(buffer, buffer + start_, held_);
    start_ = 0;
    if (held_ > kMostLineBytes) Drop();
  }

  /** The part of a line that is held is too long for a point: the line is rejected when its end comes. */
  void Drop() {
    if (!skipping_) Remember(buffer_.get(), held_);
    bytesDone_ += (std::int64_t)held_;
    held_ = 0;
    skipping_ = true;
    Progress();
  }

  /** Gives the bytes of a UTF-8 byte-order mark, and notices 16-bit text with a mark or without. */
  std::size_t SkipMark(const char* text, std::size_t size) {
    const auto startsWith = [&](const char* mark, std::size_t length) {
      return size >= length && std::memcmp(text, mark, length) == 0;
    };
    const bool wide = size >= 4 && !text[0] == !text[2] && !text[1] == !text[3] && !text[0] != !text[1];
    result_.looksUtf16 = wide || startsWith("\xFF\xFE", 2) || startsWith("\xFE\xFF", 2);
    return startsWith("\xEF\xBB\xBF", 3) ? 3 : 0;
  }

  void Line(const char* line, std::size_t length) {
    const bool tooLong = skipping_ || length > kMostLineBytes;
    skipping_ = false;
    ++result_.lines;
    bytesDone_ += (std::int64_t)length + 1;
    // Thinning counts lines, headers too.
    const std::int32_t t = counter_ >= input_.everyNth ? 0 : counter_;
    counter_ = t + 1;
    if (t != 0) {
      ++result_.thinned;
    } else {
      Remember(line, length);
      if (tooLong) {
        Reject();
      } else if (!Parse(line, (std::int32_t)length)) {
        Reject();
        odd_.Rejected(line, length, result_.lines);
      } else {
        if (IsColorless()) odd_.Colorless(line, length, result_.lines);
        Accept();
      }
    }
    Progress();
  }

  /** Only a file that gives no point is described by its first line; with points held nothing may throw. */
  void Remember(const char* line, std::size_t length) {
    if (!result_.firstLine.empty() || result_.points) return;
    std::size_t end = std::min(length, kShownBytes);
    // A UTF-8 character has at most three bytes after its first; none is cut.
    for (int step = 0; step < 3 && end < length && ((unsigned char)line[end] & 0xC0) == 0x80; ++step) --end;
    std::string text(line, end);
    // It is shown to people: control bytes would garble their terminal.
    for (char& c : text)
      if ((unsigned char)c < ' ' && c != '\t' && c != '\r') c = '?';
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

  /** Did the line give no colour? That of a PTS line without one is its intensity: a grey. */
  bool IsColorless() const {
    return pts_ ? scratch_.r == scratch_.g && scratch_.g == scratch_.b : form_ == Form::Plain;
  }

  void Reject() {
    if (result_.rejected++ == 0) result_.firstRejected = result_.lines;
  }

  void Accept() {
    if (scratch_.z <= kNoDataHeight) {
      ++result_.noData;
      return;
    }
    if (!std::isfinite((float)scratch_.x) || !std::isfinite((float)scratch_.y) ||
        !std::isfinite((float)scratch_.z)) {
      ++result_.notFinite;
      return;
    }
    if (result_.count >= input_.most) {
      result_.full = true;
      --result_.lines; // as if it had not been read
      return;
    }
    result_.box.Add({scratch_.x, scratch_.y, scratch_.z});
    if (result_.count >= capacity_ && !Grow()) {
      ++result_.noMemory;
      return;
    }
    result_.points[result_.count++] = scratch_;
  }

  /**
   * Each request asks for twice as much as the one before, whether that succeeded or not. It is far more than
   * most files hold; where it is refused, the rest of the file says how much will do.
   */
  bool Grow() {
    const std::int64_t wanted = growth_;
    const std::int64_t most = std::numeric_limits<std::int64_t>::max() / (std::int64_t)sizeof(TextPoint) / 2;
    if (growth_ <= most) growth_ *= 2;
    if (wanted <= most && Ask(wanted)) return true;
    const std::int64_t held = result_.count, rest = std::max<std::int64_t>(0, input_.fileSize - bytesDone_);
    // After refusals ever more points are lost before it asks again: each request costs more than a line.
    if (held == refusedAt_ && (result_.noMemory & (result_.noMemory - 1)) != 0) return false;
    // As many points as the shortest lines would make of the rest, or else as many as usual lines would, or
    // else as lines like those before.
    for (const std::int64_t bytes : {kShortestLine, (std::int64_t)loader_.BytesPerLine()}) {
      const std::int64_t enough = held + std::max((rest + 1) / bytes, held / 2) + 1;
      if (enough < wanted && Ask(std::min<std::int64_t>(enough, input_.most))) return true;
    }
    if (held > 0) {
      const std::int64_t likely = (std::int64_t)((double)rest * (double)held / (double)bytesDone_);
      if (Ask(std::min<std::int64_t>(held + likely + held / 64 + 1, input_.most))) return true;
    }
    refusedAt_ = held;
    return false;
  }

  bool Ask(std::int64_t capacity) {
    void* moved = input_.reallocate(result_.points, (std::size_t)capacity * sizeof(TextPoint));
    if (!moved) return false;
    result_.points = (TextPoint*)moved;
    capacity_ = capacity;
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
    // Asking a little early is harmless: a value that is shown already is not shown again.
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
  const bool pts_;
  OddLineFinder odd_;
  /** One byte more than can be held and read: each line is closed with a NUL in place. */
  const std::unique_ptr<char[]> buffer_{new char[kMostLineBytes + kChunk + 1]};
  std::size_t start_ = 0, held_ = 0, filled_ = 0; ///< of the next line; bytes of an unfinished one; all bytes
  bool begun_ = false, skipping_ = false;         ///< skipping_: the start of this line was dropped
  Form form_ = Form::Any;
  std::int32_t counter_ = 0;
  std::int64_t capacity_ = 0, growth_, bytesDone_ = 0, nextShown_ = 0;
  std::int64_t refusedAt_ = -1; ///< so many points were held when nothing of any use could be had
  int shown_ = -1;
};

} // namespace

TextResult LoadText(const TextLoader& loader, const TextInput& input) {
  return Driver(loader, input).Run();
}

} // namespace kelvra
