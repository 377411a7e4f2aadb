// Finds parameters by the words that people use.
#pragma once

#include <string>
#include <vector>

namespace cli {

/** How well a parameter answers a search, the best first. */
enum class Match {
  Word,  ///< holds the words
  Meant, ///< is known by them, or holds some and is known by the others
  Start, ///< holds words that begin so
  Part,  ///< holds them inside of words
  None
};

/** All of the words must fit, in any order, in British or American spelling, one or many of a thing. */
class ParameterSearch {
public:
  explicit ParameterSearch(const std::vector<std::string>& words);

  /** `text` is everything that is said about the parameter, its name included. */
  Match Of(const std::string& name, const std::string& text) const;

  /** "; did you mean ...?" with the nearest of the names; empty where none is near. */
  std::string Nearest(const std::vector<std::string>& names) const;

private:
  std::vector<std::string> words_;
};

} // namespace cli
