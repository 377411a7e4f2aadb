// Texts that may be longer than the room for them.
#pragma once

#include <string>

namespace cli {

/** The text, or as many of its first letters as fit into the width with an ellipsis after them. */
std::string Shortened(const std::string& text, float width);

/** Shows the text in that width. Resting on one that was shortened shows all of it. */
void ShowFitted(const std::string& text, float width);

/** To be called after a widget: resting on it shows the text if it did not fit. */
void ExplainShortened(const std::string& text, float width);

/** At the pointer, in lines that are not too long to read. */
void ShowTooltip(const std::string& text);

} // namespace cli
