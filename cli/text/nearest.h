// Names that a misspelt one was probably meant to be.
#pragma once

#include <string>
#include <vector>

namespace cli {

/** "; did you mean fit_text or fit?", at most three names, the nearest first; empty where none is near. */
std::string DidYouMean(const std::string& word, const std::vector<std::string>& names);

} // namespace cli
