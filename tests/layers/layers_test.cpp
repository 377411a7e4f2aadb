// The boundaries between the layers, kept true: who includes whom, and what the module lets out.
#include "support/common.h"

#include <cstdio>
#include <regex>

namespace {

namespace fs = std::filesystem;

struct Include {
  std::string file, target;
};

/** Calls visit with each line of the sources in a folder of the project, and with its file. */
void ForEachLine(const std::string& folder,
                 std::function<void(const std::string&, const std::string&)> visit) {
  for (const auto& entry : fs::recursive_directory_iterator(fs::path(KELVRA_SOURCE_DIR) / folder)) {
    const std::string suffix = entry.path().extension().string();
    if (!entry.is_regular_file() || (suffix != ".h" && suffix != ".cpp" && suffix != ".inc")) continue;
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) visit(line, entry.path().string());
  }
}

std::vector<Include> IncludesOf(const std::string& folder) {
  std::vector<Include> includes;
  const std::regex pattern("^\\s*#\\s*include\\s*[<\"]([^>\"]+)[>\"].*");
  ForEachLine(folder, [&](const std::string& line, const std::string& file) {
    std::smatch match;
    if (std::regex_match(line, match, pattern)) includes.push_back({file, match[1]});
  });
  return includes;
}

void ExpectNone(const std::string& folder, const std::regex& forbidden) {
  const std::vector<Include> includes = IncludesOf(folder);
  EXPECT_GT(includes.size(), 10u) << folder;
  for (const Include& include : includes)
    EXPECT_FALSE(std::regex_search(include.target, forbidden))
        << include.file << " includes " << include.target;
}

TEST(Layers, NobodyReachesAcrossTheSeam) {
  ExpectNone("source", std::regex("^(\\.\\./)*(host|cli|tools)/|c4d_os\\.h|c4d_fence\\.h|^GL/|epoxy"));
  ExpectNone("sdk", std::regex("^(\\.\\./)*(host|source|cli|object|text|shader|videopost|net)/"));
  ExpectNone(
      "host",
      std::regex("^(\\.\\./)*(source|object|text|shader|videopost|net|cli)/|otallyframe|vpkelvrarender"));
  ExpectNone("cli", std::regex("^(\\.\\./)*(source|object|text|shader|videopost|net)/|c4d_os\\.h"));
  // Beside the host's public face: picture files, files that are replaced or go with the run, the user's
  // break, checksums, text for terminals, descriptions of parameters, and what the host's own types of nodes
  // hold, whose size and place in the tree the commands print.
  ExpectNone(
      "cli",
      std::regex(
          "^host/(?!picture/(image|picture)\\.h|base/"
          "(box|replacing_file|temporary_file|printable|user_break|utf8)\\.h|scene/checksum\\.h|memory/"
          "(free_memory|memory)\\.h|parameters/"
          "(node_parameters|parameter_text)\\.h|geometry/(point_nodes|variable_tag)\\.h|hair/"
          "hair_object\\.h|particles/\\w+\\.h)\\w+/"));
}

/**
 * A folder of sources and its rooms, from the ground up, one text a floor. A room is a folder, a file with
 * its header ("glpoint"), or what lies in the top folder itself (".").
 */
struct House {
  std::string folder;
  std::vector<std::string> floors;
};
const House kHouses[] = {
    {"source",
     {"version plugin_ids registration fence glpoint host_text grouped_number object/autobuffer", "cloud",
      "text", "net", "object/las", "object/load object/draw object/convert object/render", "object",
      "shader videopost", "."}},
    {"host",
     {"base", "memory", "picture resource", "gl", "plugins", "nodes", "parameters", "undo", "scene",
      "geometry", "hair particles", "view", "render", "seam", "."}},
    {"cli", {"system text csv", "session", "commands", "view reference", "."}},
};

struct Room {
  std::string name;
  std::size_t floor = 0;
};

std::vector<Room> RoomsOf(const House& house) {
  std::vector<Room> rooms;
  for (std::size_t floor = 0; floor < house.floors.size(); ++floor) {
    std::istringstream names(house.floors[floor]);
    for (std::string name; names >> name;) rooms.push_back({name, floor});
  }
  return rooms;
}

/** The room with the longest name that holds the file; the path is relative to the house. */
const Room* RoomOf(const std::vector<Room>& rooms, const std::string& path) {
  const Room* found = nullptr;
  for (const Room& room : rooms) {
    const std::string& name = room.name;
    const bool holds = name == "." ? path.find('/') == std::string::npos
                                   : path.compare(0, name.size(), name) == 0 &&
                                         (path[name.size()] == '/' || path[name.size()] == '.');
    if (holds && (!found || found->name.size() < name.size())) found = &room;
  }
  return found;
}

// A room uses itself and what lies on the floors below, neither those above nor its neighbours.
TEST(Layers, RoomsIncludeDownwardsOnly) {
  for (const House& house : kHouses) {
    const fs::path top = fs::path(KELVRA_SOURCE_DIR) / house.folder;
    const std::vector<Room> rooms = RoomsOf(house);
    std::set<std::string> used;
    for (const Include& include : IncludesOf(house.folder)) {
      // As the compiler finds them: from the house or, with the house's name in front, from the project.
      fs::path target = top / include.target;
      if (!fs::is_regular_file(target)) target = top.parent_path() / include.target;
      const std::string from = fs::relative(include.file, top).generic_string();
      const std::string to = fs::relative(target, top).generic_string();
      if (!fs::is_regular_file(target) || to.compare(0, 2, "..") == 0)
        continue; // of another house, or the system
      const Room *user = RoomOf(rooms, from), *room = RoomOf(rooms, to);
      ASSERT_TRUE(user && room) << house.folder << ": " << (user ? to : from) << " stands in no room";
      EXPECT_TRUE(room->floor < user->floor || room->name == user->name)
          << house.folder << "/" << from << " includes " << to << ", of a room above or beside its own";
      used.insert({user->name, room->name});
    }
    for (const Room& room : rooms) EXPECT_EQ(used.count(room.name), 1u) << house.folder << ": " << room.name;
  }
}

TEST(Layers, HostKnowsNothingOfPointClouds) {
  // Neither the module's names nor its plug-in numbers.
  const std::regex forbidden(
      "kelvra|1037074|1037077|1037178|1037078|1037072|10376\\d\\d|point ?cloud|\\blas(z|lib)?\\b",
      std::regex::icase);
  ForEachLine("host", [&](const std::string& line, const std::string& file) {
    EXPECT_FALSE(std::regex_search(line, forbidden)) << file << ": " << line;
  });
}

TEST(Layers, ModuleExportsOnlyItsEntry) {
  const std::string module = std::string(KELVRA_BIN_DIR) + "/kelvra.so";
  ASSERT_TRUE(fs::exists(module));
  std::FILE* list = popen(("nm -D --defined-only '" + module + "'").c_str(), "r");
  ASSERT_NE(list, nullptr);
  std::set<std::string> names;
  std::array<char, 4096> line;
  char address[64], kind[8], name[2048];
  while (std::fgets(line.data(), line.size(), list))
    if (std::sscanf(line.data(), "%63s %7s %2047s", address, kind, name) == 3) names.insert(name);
  ASSERT_EQ(pclose(list), 0);
  EXPECT_EQ(names, std::set<std::string>{"c4d_main"});
}

// The interface check poisons what the headers mark as ours. A mark covers what is inside its braces; names
// of the vendor's, private members and members of our own classes must stay usable.
TEST(Layers, PoisonIsWhatTheInterfaceHeadersMarkAsOurs) {
  std::ifstream list(fs::path(KELVRA_BIN_DIR) / "../vendor/poisoned_names.h");
  std::set<std::string> poisoned;
  for (std::string pragma, gcc, poison, name; list >> pragma >> gcc >> poison >> name;) poisoned.insert(name);
  for (const char* ours : {"sdk", "HostOwned", "EmitterLibrary", "Oemitter_external", "VectorT",
                           "InsertUnder", "SELECTION_ADD", "C4DOS", "C4D_ENTRY", "GetKnot"})
    EXPECT_EQ(poisoned.count(ours), 1u) << ours;
  for (const char* usable : {"Vector", "SELECTION_NEW", "GetPoint", "RegisterObjectPlugin", "GeAlloc", "New",
                             "Prepare", "Grow", "text_", "API_VERSION"})
    EXPECT_EQ(poisoned.count(usable), 0u) << usable;
}

} // namespace
