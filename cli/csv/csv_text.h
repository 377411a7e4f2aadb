// Tables with a header line, made into the plain text that the module reads.
#pragma once

#include <istream>
#include <ostream>
#include <string>

namespace cli {

/**
 * Reads a table whose first line names its columns: x, y, z or what stands for them, and r, g, b or intensity
 * where there are any, in any order and case, others among them. Commas, semicolons or tabs separate;
 * decimals have a point, or a comma where no comma separates. Writes "x y z" or "x y z r g b" a line:
 * coordinates digit by digit as they are, colours from 0 to 255 whatever their range was (0 to 1, 0 to 255 or
 * 16 bits), an intensity without colours as a grey that is white at the highest. Reads the table twice; `in`
 * must be at its start and be able to go back there. False with line, column and what is expected, or when
 * the user stopped the program.
 */
bool ConvertTable(std::istream& in, std::ostream& out, std::string* error);

/** How a text that begins so could be read as a table: "to load it, name it .csv"; empty where it could not.
 */
std::string WayToLoadAsTable(std::istream& in);

} // namespace cli
