#include "cli/commands/render/moving_setting.h"

#include "cli/commands/options/number.h"
#include "cli/system/exit_status.h"

#include <iomanip>
#include <locale>
#include <sstream>

namespace cli {

std::string MovingSetting::At(double share) const {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << name << '=' << std::setprecision(15) << from + (to - from) * share;
  return text.str();
}

std::vector<MovingSetting> TakeMovingSettings(std::vector<std::string>& settings) {
  std::vector<MovingSetting> moving;
  for (std::string& setting : settings) {
    const std::size_t equals = setting.find('='), dots = setting.find("..", equals);
    if (equals == std::string::npos || dots == std::string::npos) continue;
    try {
      const double from = ParseNumber(setting.substr(equals + 1, dots - equals - 1));
      moving.push_back({setting.substr(0, equals), from, ParseNumber(setting.substr(dots + 2))});
      setting.resize(dots);
    } catch (const UsageError&) {
      // Not numbers: a name of a file may have two dots too.
    }
  }
  return moving;
}

} // namespace cli
