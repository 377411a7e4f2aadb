#include "cli/commands/params/parameter_search.h"

#include "cli/text/nearest.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>

namespace cli {

namespace {

/** What people call things whose names and sentences say it otherwise. Words are in the form of Folded. */
const struct {
  const char *words, *names;
} kKnownAs[] = {
    {"thin thinned thinning decimate decimation subsample sample sampling reduce fewer density",
     "load_nth thin_view point_share"},
    {"share percentage fraction part", "point_share"},
    {"fog haze mist blur blurry soft softness smooth", "transparency edge_bias soft_depth"},
    {"alpha opaque opacity", "transparency opacity_curve"},
    {"max maximum limit most memory ram", "load_budget load_nth"},
    {"coordinate survey utm georeference offset shift", "local_origin origin save_survey epsg"},
    {"projection crs srs wkt", "epsg local_origin"},
    {"big small large thick", "point_size point_radius object_size"},
    {"scale", "object_size fit_text"},
    {"hole gap", "point_radius point_size"},
    {"palette gradient colormap", "ramp ramp_low ramp_high"},
    {"classification classify", "load_color"},
    {"elevation altitude", "load_color color_mode min_height max_height curve_min_height curve_max_height"},
    {"shade shading shadow lit", "light light_flat"},
    {"jitter random noise", "radius_variation"},
    {"crop clip cut slice hide", "falloff_action falloff_shape falloff_radius"},
    {"mesh geometry conversion", "convert_mode"},
};

/** Words that say nothing about a parameter. */
constexpr const char* kFillers = " the a an of in for to with how set true real ";

bool IsWordChar(char c) {
  return std::isalnum((unsigned char)c) != 0;
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

/** In lower case and American spelling. */
std::string Folded(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = (char)(c - 'A' + 'a');
  for (const auto& [british, american] :
       {std::pair("colour", "color"), {"grey", "gray"}, {"centre", "center"}, {"metre", "meter"}})
    ReplaceAll(text, british, american);
  return text;
}

/** "classes" -> "class", "edges" -> "edge"; "class" stays. */
std::string Singular(const std::string& word) {
  const auto endsIn = [&](const std::string& end) {
    return word.size() > end.size() + 2 && word.compare(word.size() - end.size(), end.size(), end) == 0;
  };
  for (const char* end : {"sses", "xes", "ches", "shes"})
    if (endsIn(end)) return word.substr(0, word.size() - 2);
  return endsIn("s") && !endsIn("ss") && !endsIn("us") ? word.substr(0, word.size() - 1) : word;
}

bool Lists(const std::string& list, const std::string& word) {
  return (" " + list + " ").find(" " + word + " ") != std::string::npos;
}

bool IsKnownAs(const std::string& name, const std::string& word) {
  return std::any_of(std::begin(kKnownAs), std::end(kKnownAs),
                     [&](const auto& known) { return Lists(known.words, word) && Lists(known.names, name); });
}

/** Behind a word, and behind its plural. */
bool EndsWord(const std::string& text, std::size_t end) {
  for (const char* plural : {"", "s", "es"}) {
    const std::size_t length = std::string(plural).size();
    if (text.compare(end, length, plural) == 0 &&
        (end + length >= text.size() || !IsWordChar(text[end + length])))
      return true;
  }
  return false;
}

Match MatchInText(const std::string& text, const std::string& word) {
  Match best = Match::None;
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    const bool begins = at == 0 || !IsWordChar(text[at - 1]);
    const bool whole = begins && EndsWord(text, at + word.size());
    best = std::min(best, whole ? Match::Word : begins ? Match::Start : Match::Part);
  }
  return best;
}

} // namespace

ParameterSearch::ParameterSearch(const std::vector<std::string>& words) {
  std::vector<std::string> all;
  for (const std::string& argument : words) {
    std::istringstream parts(Folded(argument));
    for (std::string word; parts >> word;) all.push_back(Singular(word));
  }
  for (const std::string& word : all)
    if (!Lists(kFillers, word)) words_.push_back(word);
  if (words_.empty()) words_ = all;
}

Match ParameterSearch::Of(const std::string& name, const std::string& text) const {
  const std::string folded = Folded(text);
  Match worst = Match::Word;
  for (const std::string& word : words_) {
    Match match = MatchInText(folded, word);
    if (match > Match::Meant && IsKnownAs(name, word)) match = Match::Meant;
    worst = std::max(worst, match);
  }
  return worst;
}

std::string ParameterSearch::Nearest(const std::vector<std::string>& names) const {
  std::string phrase;
  for (const std::string& word : words_) phrase += (phrase.empty() ? "" : "_") + word;
  std::string near = DidYouMean(phrase, names);
  // A misspelt word is nearer to a part of a name, "color" of color_mode.
  std::set<std::string> parts(names.begin(), names.end());
  for (std::string name : names) {
    std::replace(name.begin(), name.end(), '_', ' ');
    std::istringstream words(name);
    for (std::string word; words >> word;) parts.insert(word);
  }
  const std::vector<std::string> known(parts.begin(), parts.end());
  for (std::size_t i = 0; near.empty() && i < words_.size(); ++i)
    if (parts.count(words_[i]) == 0) near = DidYouMean(words_[i], known);
  return near;
}

} // namespace cli
