// What info says about one file beyond its line.
#pragma once

#include "cli/session/cloud_stats.h"

#include <nlohmann/json.hpp>

namespace cli {

/** Where a file's points are shown, in the axes of the scene; empty where that is not known. */
using SceneBox = host::Box;
/** Scenes are looked at, not measured: what is smaller does not count. */
constexpr double kSceneStep = 0.001;

/** As many decimals as the step keeps; zeros at the end are left out. */
std::string Coordinate(double value, double step);

/** "x 1..2, y 3..4, z 5..6" */
std::string BoxText(const host::Box& box, double step);

/** The same as JSON, without digits that neither the floats nor their origin had; null without a box. */
nlohmann::json BoxJson(const host::Box& box, double step);

/**
 * One line each: kind and coordinate system; the boxes; points of each class where they were counted.
 * `points` are those of the file, or null.
 */
std::vector<std::string> FactLines(const FileReport& report, const BlockStats* points);

/** All of it, and how the load went. */
nlohmann::json FactsJson(const FileReport& report, const BlockStats* points);

} // namespace cli
