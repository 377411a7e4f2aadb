#include "cli/commands/snapshot/legend.h"

#include "cli/commands/snapshot/pixel_text.h"
#include "cli/session/cloud_extent.h"
#include "cli/session/cloud_parameters.h"
#include "cli/text/format.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

// Lengths in pixels at scale 1.
constexpr int kMargin = 8, kPadding = 6, kSwatch = 8, kBarWidth = 12, kBarHeight = 150, kTick = 3;
/** Height of a picture in which the text has scale 1. */
constexpr int kSmallPicture = 360;
/** What is left of the picture's light behind the legend. */
constexpr double kPanel = 0.35;
constexpr int kMostTicks = 6;

struct Box2 {
  int left, top, width, height;
};

void Paint(host::gl::Image* image, const Box2& box, const Vector& color) {
  for (int y = std::max(box.top, 0); y < std::min(box.top + box.height, image->height); ++y)
    for (int x = std::max(box.left, 0); x < std::min(box.left + box.width, image->width); ++x)
      for (int channel = 0; channel < 3; ++channel)
        image->At(x, y)[channel] = (std::uint8_t)(std::clamp(color[channel], 0.0, 1.0) * 255.0 + 0.5);
}

void Darken(host::gl::Image* image, const Box2& box) {
  for (int y = std::max(box.top, 0); y < std::min(box.top + box.height, image->height); ++y)
    for (int x = std::max(box.left, 0); x < std::min(box.left + box.width, image->width); ++x)
      for (int channel = 0; channel < 3; ++channel)
        image->At(x, y)[channel] = (std::uint8_t)(image->At(x, y)[channel] * kPanel);
}

/** 1, 2 or 5 times a power of ten, so that at most kMostTicks fit into the range. */
double TickStep(double range) {
  const double least = range / kMostTicks, power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (power * factor >= least) return power * factor;
  return power * 10.0;
}

struct Tick {
  double value;
  std::string text;
};

std::vector<Tick> TicksOf(double from, double to) {
  std::vector<Tick> ticks;
  if (!(to > from)) return {{from, Fixed(from, 2)}};
  const double step = TickStep(to - from);
  const int decimals = std::clamp((int)-std::floor(std::log10(step) + 1e-9), 0, 9);
  const double first = std::ceil(from / step - 1e-9) * step;
  const int last = (int)std::floor((to - first) / step + 1e-9);
  for (int i = 0; i <= last; ++i) {
    const double value = first + i * step;
    ticks.push_back({value, Fixed(std::abs(value) < step * 1e-6 ? 0.0 : value, decimals)});
  }
  return ticks;
}

const char* TitleOf(LONG kind) {
  return kind == KELVRA_LOAD_COLOR_INTENSITY ? "intensity" : "height";
}

void DrawScale(const KelvraLegend& legend, int scale, host::gl::Image* image) {
  const double from = legend.entries[0].value, to = legend.entries[legend.count - 1].value;
  const std::vector<Tick> ticks = TicksOf(from, to);
  const std::string title = TitleOf(legend.kind);
  int text = 0;
  for (const Tick& tick : ticks) text = std::max(text, TextWidth(tick.text));
  const int inner = std::max(kBarWidth + 2 * kTick + text, TextWidth(title));
  Box2 panel;
  panel.width = (inner + 2 * kPadding) * scale;
  panel.height = (kBarHeight + kLinePixels + 2 * kPadding) * scale;
  panel.left = image->width - panel.width - kMargin * scale;
  panel.top = (image->height - panel.height) / 2;
  Darken(image, panel);

  const int left = panel.left + kPadding * scale;
  DrawText(image, left, panel.top + kPadding * scale, scale, title);
  const Box2 bar = {left, panel.top + (kPadding + kLinePixels) * scale, kBarWidth * scale,
                    kBarHeight * scale};
  for (int row = 0; row < bar.height; ++row) {
    const double share = 1.0 - (row + 0.5) / bar.height;
    const int entry = (int)std::lround(share * (legend.count - 1));
    Paint(image, {bar.left, bar.top + row, bar.width, 1}, legend.entries[entry].color);
  }
  for (const Tick& tick : ticks) {
    const double share = to > from ? (tick.value - from) / (to - from) : 0.5;
    const int y = bar.top + (int)std::lround((1.0 - share) * (bar.height - 1));
    Paint(image, {bar.left + bar.width, y, kTick * scale, scale}, Vector(0.94));
    DrawText(image, bar.left + bar.width + 2 * kTick * scale, y - 3 * scale, scale, tick.text);
  }
}

void DrawList(const KelvraLegend& legend, int scale, host::gl::Image* image) {
  int text = 0;
  for (LONG i = 0; i < legend.count; ++i) text = std::max(text, TextWidth(legend.entries[i].text));
  const int lines = std::min<int>(legend.count, (image->height / scale - 2 * kMargin) / kLinePixels - 1);
  Box2 panel;
  panel.width = (kSwatch + kPadding + text + 2 * kPadding) * scale;
  panel.height = (lines * kLinePixels + 2 * kPadding) * scale;
  panel.left = image->width - panel.width - kMargin * scale;
  panel.top = (image->height - panel.height) / 2;
  Darken(image, panel);
  for (int i = 0; i < lines; ++i) {
    const int left = panel.left + kPadding * scale, top = panel.top + (kPadding + i * kLinePixels) * scale;
    Paint(image, {left, top, kSwatch * scale, kSwatch * scale}, legend.entries[i].color);
    DrawText(image, left + (kSwatch + kPadding) * scale, top, scale, legend.entries[i].text);
  }
}

/** The grey of the viewport's own height mode. */
void FillGrey(BaseObject* cloud, KelvraLegend* legend) {
  const SurveyPlace place(cloud);
  const Matrix global = cloud->GetMg();
  const auto fileHeight = [&](double height) { return place.ToFile(global * Vector(0, height, 0)).z; };
  const double low = fileHeight(RealParameter(cloud, KELVRA_MIN_HEIGHT)),
               high = fileHeight(RealParameter(cloud, KELVRA_MAX_HEIGHT));
  const bool inverted = cloud->GetDataInstance()->GetLong(KELVRA_COLOR_INVERT) != KELVRA_COLOR_INVERT_OFF;
  legend->kind = KELVRA_LOAD_COLOR_HEIGHT;
  legend->count = 64;
  for (LONG i = 0; i < legend->count; ++i) {
    const double share = (double)i / (legend->count - 1);
    legend->entries[i] = {low + (high - low) * share, Vector(inverted ? 1.0 - share : share), {}};
  }
}

} // namespace

bool FindLegend(const CloudSession& session, KelvraLegend* legend) {
  for (BaseObject* cloud : session.Clouds()) {
    *legend = KelvraLegend();
    legend->version = 1;
    const LONG mode = cloud->GetDataInstance()->GetLong(KELVRA_COLOR_MODE);
    if (mode == KELVRA_COLOR_MODE_HEIGHT)
      FillGrey(cloud, legend);
    else if (mode == KELVRA_COLOR_MODE_POINT)
      cloud->Message(KELVRA_MESSAGE_LEGEND, legend);
    if (legend->count > 0) return true;
  }
  return false;
}

void DrawLegend(const KelvraLegend& legend, host::gl::Image* image) {
  const int scale = std::max(1, image->height / kSmallPicture);
  if (legend.kind == KELVRA_LOAD_COLOR_HEIGHT || legend.kind == KELVRA_LOAD_COLOR_INTENSITY)
    DrawScale(legend, scale, image);
  else
    DrawList(legend, scale, image);
}

} // namespace cli
