// What a file is, as far as that can be seen before it is loaded.
#pragma once

#include <string>
#include <vector>

namespace cli {

bool IsFolder(const std::string& path);

/**
 * Why a file is not loaded by the reader that its name chooses, by its name and its first bytes, and what to
 * do about it; empty where nothing speaks against it.
 */
std::string OtherFormat(const std::string& path);

/** Does a line of its beginning start with three numbers, as those of text clouds do? */
bool HoldsPoints(const std::string& path);

/** How to load a file that holds points, but of another format than its name says; empty for others. */
std::string MisnamedCloud(const std::string& path);

/** Does the suffix promise a point cloud? */
bool NamesCloud(const std::string& path);

/** The files that a folder stands for, sorted as the module sorts them. */
std::vector<std::string> FilesOfFolder(const std::string& folder);

/**
 * Those of them that may hold a point cloud: the suffix promises one, or text has a line that begins with
 * three numbers. The files that are left out go to `others`.
 */
std::vector<std::string> CloudFiles(const std::string& folder, std::vector<std::string>* others = nullptr);

/** The folders that lie in a folder, sorted; hidden ones apart. */
std::vector<std::string> FoldersIn(const std::string& folder);

/** The names of files or folders without their paths, the first few of many: "a.ply, b.pdf and 3 more". */
std::string SomeNames(const std::vector<std::string>& paths);

/** Files of a folder whose names the module cannot be given. */
std::vector<std::string> NotUtf8In(const std::string& folder);

/** Why a file or folder cannot be read as the system puts it; empty when it can. */
std::string ReadObstacle(const std::string& path);

constexpr const char* kNotUtf8 = "the name is not UTF-8; rename it";

} // namespace cli
