// Loading, saving, reopening and exporting through the program.
#include "support/program_run.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace cli_test {
namespace {

constexpr const char* kPoints = "1 2 3 10 20 30\n4 5 6 40 50 60\n-7 8.5 9 255 0 0\n";

TEST(Info, ReportsPointsAndBoxInFileAxes) {
  const TempFolder folder;
  const std::string cloud = folder.Write("three points.xyz", kPoints);
  const Result result = Kelvra({"info", "--json", cloud});
  ASSERT_EQ(result.status, 0) << result.err;
  const nlohmann::json info = result.Json();
  EXPECT_EQ(info["points"], 3);
  EXPECT_EQ(info["groups"], 1);
  EXPECT_EQ(info["blocks"], 1);
  EXPECT_EQ(info["bbox"]["min"], nlohmann::json({-7.0, 2.0, 3.0}));
  EXPECT_EQ(info["bbox"]["max"], nlohmann::json({4.0, 8.5, 9.0}));
  EXPECT_EQ(info["files"][0]["path"], cloud);
  const nlohmann::json& file = info["files"][0];
  EXPECT_EQ(file["points"], 3);
  EXPECT_EQ(file["status"], "whole");
  EXPECT_EQ(file["box"], info["bbox"]);
  EXPECT_EQ(file["scene_box"]["min"], nlohmann::json({-7.0, 3.0, 2.0})) << "y up";
  EXPECT_EQ(file["scene_box"], info["scene_box"]);
  EXPECT_FALSE(info["files"][0]["message"].get<std::string>().empty());
  EXPECT_GE(info["seconds"].get<double>(), 0.0);
  EXPECT_GE(info["peak_memory_bytes"].get<long long>(), 0);
}

TEST(Info, WhatLoadedIsKeptWhenAnotherFileIsRefused) {
  const TempFolder folder;
  const std::string good = folder.Write("good.xyz", kPoints),
                    bad = folder.Write("bad.xyz", "~VERSION INFORMATION\n");
  const Result result = Kelvra({"info", "--json", bad, good, folder / "missing.laz"});
  EXPECT_EQ(result.status, 1);
  const nlohmann::json info = result.Json();
  EXPECT_EQ(info["points"], 3);
  ASSERT_EQ(info["files"].size(), 3u);
  EXPECT_EQ(info["files"][0]["points"], 0);
  EXPECT_NE(info["files"][0]["message"].get<std::string>().find("no line holds a point"), std::string::npos);
  EXPECT_EQ(info["files"][1]["points"], 3);
}

TEST(Info, WarnsOfCloudsThatLieFarApart) {
  const TempFolder folder;
  const std::string near = folder.Write("near.xyz", "0 0 0\n10 10 1\n"),
                    far = folder.Write("far.xyz", "9000 0 0\n9010 5 1\n");
  EXPECT_EQ(Kelvra({"info", near, near}).err, "");
  const std::string err = Kelvra({"info", near, far}).err;
  for (const char* part : {"near.xyz (x 0.00..10.00, ", "far.xyz (x 9000.00..9010.00, ", " lie 8,990 apart"})
    EXPECT_TRUE(Holds(err, part)) << err;
}

/** A LAS 1.2 file without records gets one that names its coordinate system. */
std::string WithSystem(std::string las, std::uint16_t epsg) {
  std::string record(54, '\0');
  record.replace(2, 15, "LASF_Projection");
  const std::uint16_t id = 34735, keys[] = {1, 1, 0, 1, 3072, 0, 1, epsg}, size = sizeof keys;
  std::memcpy(&record[18], &id, 2);
  std::memcpy(&record[20], &size, 2);
  record.append((const char*)keys, size);
  const std::uint32_t places[] = {(std::uint32_t)(227 + record.size()), 1}; // of the points; how many records
  std::memcpy(&las[96], places, sizeof places);
  return las.insert(227, record);
}

TEST(Info, WarnsOfDifferentCoordinateSystems) {
  const TempFolder folder;
  ASSERT_EQ(RunProgram("make_cloud", {"--points", "9", folder / "plain.las"}).status, 0);
  const std::string plain = TempFolder::Read(folder / "plain.las"),
                    west = folder.Write("west.las", WithSystem(plain, 25832)),
                    east = folder.Write("east.las", WithSystem(plain, 25833));
  EXPECT_EQ(Kelvra({"info", west, folder / "plain.las", west}).err, "");
  EXPECT_TRUE(Holds(Kelvra({"info", west, folder / "plain.las", east}).err,
                    "west.las (EPSG 25832, m) and " + east + " (EPSG 25833, m) are in different coordinate"));
}

TEST(Info, SaysWhyAFileCannotBeRead) {
  const TempFolder folder;
  const std::string good = folder.Write("good.xyz", kPoints), circle = folder / "circle.xyz";
  std::filesystem::create_symlink(circle, circle);
  std::filesystem::create_directory(folder / "names");
  folder.Write("names/\xe5.xyz", kPoints);
  std::filesystem::create_directory(folder / "pipes");
  for (const char* pipe : {"p.csv", "pipes/p.xyz"}) ASSERT_EQ(::mkfifo((folder / pipe).c_str(), 0600), 0);
  const std::pair<std::string, std::string> cases[] = {
      {folder / "names", "names/\\xe5.xyz: the name is not UTF-8; rename it"},
      {folder / "missing.xyz", "no such file or folder"},
      {good + "/inner.xyz", "Not a directory"},
      {folder / std::string(300, 'x'), "File name too long"},
      {circle, "Too many levels of symbolic links"},
      {folder / "p.csv", "p.csv: not a regular file"},
      {folder / "pipes", "p.xyz: not a regular file"},
      {"/dev/null", "/dev/null: not a regular file"},
      {folder.Write("\xe4.xyz", kPoints), "\\xe4.xyz: the name is not UTF-8; rename it"},
      {folder.Write("begins.scene", "HSCN and no more"), "begins.scene"},
  };
  for (const auto& [path, reason] : cases) {
    const Result result = Kelvra({"info", good, path, good});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find(reason), std::string::npos) << result.err;
    EXPECT_NE(result.out.find("total: 6 points"), std::string::npos) << result.out;
  }
  EXPECT_EQ(Kelvra({"info", circle}).out.find("box"), std::string::npos) << "nothing has no box";
}

TEST(Info, OrdinaryUsersReadThatTheyMayNot) {
  const TempFolder folder;
  const std::string closed = folder / "closed", secret = folder.Write("secret.xyz", kPoints);
  std::filesystem::create_directory(closed);
  std::filesystem::permissions(folder / "", (std::filesystem::perms)0777);
  for (const std::string& path : {closed, secret}) std::filesystem::permissions(path, {});
  constexpr int kNoOrdinaryUser = 77, kNobody = 65534;
  const pid_t child = ::fork();
  if (child == 0) {
    const bool superuser = ::geteuid() == 0;
    if (superuser && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) ::_exit(kNoOrdinaryUser);
    if (Kelvra({"--version"}).status != 0) ::_exit(kNoOrdinaryUser);
    const std::vector<std::string> cases[] = {
        {"info", secret},
        {"info", closed},
        {"sequence", "--each", closed, "--do", "info", "-o", folder / "all.json"}};
    int wrong = 0;
    for (const std::vector<std::string>& c : cases) {
      const Result result = Kelvra(c);
      wrong += result.status != 1 || !Holds(result.err, c[1 + (c.size() > 2)] + ": Permission denied");
    }
    ::_exit(wrong);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  std::filesystem::permissions(closed, std::filesystem::perms::owner_all);
  if (WEXITSTATUS(status) == kNoOrdinaryUser) GTEST_SKIP() << "no ordinary user can run the program here";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(Info, LoadsTablesOfAFolderAndNamesWhatIsNoCloudInOneLine) {
  const TempFolder folder;
  std::filesystem::create_directory(folder / "mixed");
  folder.Write("mixed/a.csv", "x,y,z\n1,2,3\n");
  folder.Write("mixed/b.xyz", kPoints);
  folder.Write("mixed/mesh.ply", "ply\n1 2 3\n");
  folder.Write("mixed/notes.txt", "nothing here\n");
  const Result result = Kelvra({"info", "--quiet", folder / "mixed"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            folder / "mixed" + ": 2 files are not point clouds: mesh.ply, notes.txt (--verbose says why)\n");
  EXPECT_EQ(Kelvra({"info", "--json", folder / "mixed"}).Json()["points"], 4);
}

TEST(Info, DescribesFilesThatLieFarApartAsIfEachWereLoadedAlone) {
  const TempFolder folder;
  const std::string local = folder.Write("local.xyz", kPoints),
                    remote = folder.Write("remote.xyz", "700000.125 6500000 5\n700010 6500020.375 7\n");
  const nlohmann::json alone = Kelvra({"info", "--json", remote}).Json()["files"][0],
                       both = Kelvra({"info", "--json", local, remote}).Json();
  for (const char* fact : {"box", "scene_box", "step", "spacing"})
    EXPECT_EQ(both["files"][1][fact], alone[fact]) << fact;
  EXPECT_TRUE(both["scene_box"].is_null());
  EXPECT_EQ(both["points"], 5);
}

TEST(Info, WarnsOfWhatIsHardlyMeant) {
  const TempFolder folder;
  const std::string grid = folder.Write("grid.asc", "ncols 3\nnrows 2\n1 2 3\n4 5 6\n");
  const Result result = Kelvra({"info", "--quiet", grid});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(Holds(result.err, "line 1 announces an Esri grid")) << result.err;
  EXPECT_TRUE(Holds(Kelvra({"info", grid, folder / "./grid.asc"}).out, ": given twice (also as " + grid))
      << "a file has more names than one";
}

TEST(Save, SceneReopensWithTheSamePointsAndText) {
  const TempFolder folder;
  const std::string cloud = folder.Write("c.xyz", kPoints), scene = folder / "c.scene";
  ASSERT_EQ(Kelvra({"save", cloud, "-o", scene, "--set", "point_size=5"}).status, 0);
  const nlohmann::json before = Kelvra({"info", "--json", cloud}).Json(),
                       after = Kelvra({"info", "--json", scene}).Json();
  EXPECT_EQ(before["points"], after["points"]);
  EXPECT_EQ(before["bbox"], after["bbox"]);
  ASSERT_EQ(Kelvra({"export", cloud, "-o", folder / "a.txt"}).status, 0);
  ASSERT_EQ(Kelvra({"export", scene, "-o", folder / "b.txt"}).status, 0);
  const std::string text = TempFolder::Read(folder / "a.txt");
  EXPECT_EQ(text, TempFolder::Read(folder / "b.txt"));
  EXPECT_TRUE(Holds(Kelvra({"export", scene, "-o", folder / "b.txt", "--fault", "write=1"}).err,
                    "b.txt: No space left on device"));
  // Colours were 8 bits, times 256 in the store, and come out as 16-bit values scaled to 0..255.
  EXPECT_EQ(text.substr(0, text.find('\n')), "1 2 3 9 19 29");
}

TEST(Output, EveryCommandSparesTheFilesOfOthers) {
  const TempFolder folder;
  const std::string cloud = folder.Write("c.xyz", kPoints);
  const struct {
    const char *command, *suffix, *start; ///< of what it writes
    std::vector<std::string> more;
  } cases[] = {{"export", ".txt", "1 2 3 9 19 29\n", {}},
               {"save", ".scene", "HSCN", {}},
               {"convert", ".ply", "ply\n", {"--mode", "point"}},
               {"render", ".png", "\x89PNG", {"--size", "8x8"}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.command);
    const auto run = [&](const std::string& output, const char* force = "") {
      std::vector<std::string> arguments = {c.command, cloud, "-o", output};
      arguments.insert(arguments.end(), c.more.begin(), c.more.end());
      if (*force) arguments.push_back(force);
      return Kelvra(arguments);
    };
    const auto written = [&](const std::string& bytes) { return bytes.rfind(c.start, 0) == 0; };
    const std::string real = folder.Write(std::string("real") + c.suffix, "old"),
                      link = folder / "link" + c.suffix, other = folder.Write("other", "of somebody");
    std::filesystem::create_symlink(real, link);
    std::filesystem::create_symlink(other, link + ".part");
    std::filesystem::permissions(real, std::filesystem::perms::owner_read);
    EXPECT_EQ(run(link).status, 1);
    EXPECT_NE(run(link).err.find("write-protected (--force replaces it)"), std::string::npos);
    EXPECT_EQ(TempFolder::Read(real), "old");
    EXPECT_EQ(run(link, "--force").status, 0);
    EXPECT_TRUE(written(TempFolder::Read(real)));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(TempFolder::Read(other), "of somebody");
    const Result standard = run("-");
    EXPECT_EQ(standard.status, 0) << standard.err;
    EXPECT_TRUE(written(standard.out));
    EXPECT_NE(standard.err.find("standard output: "), std::string::npos) << standard.err;
    EXPECT_NE(run("/dev/stdout").status, 0);
    std::string closed =
        "XDG_CONFIG_HOME='" + folder / "config" + "' '" KELVRA_BIN_DIR "/kelvra' " + c.command;
    for (const std::string& word : c.more) closed += " " + word;
    closed += " '" + cloud + "' -o - >&- 2>'" + folder / "err" + "'";
    EXPECT_EQ(WEXITSTATUS(std::system(closed.c_str())), 1);
    EXPECT_EQ(TempFolder::Read(folder / "err"),
              "kelvra: standard output: it is closed; nothing was written\n");
  }
  std::filesystem::create_directory(folder / "scans");
  const std::string scan = folder.Write("scans/c.xyz", kPoints), link = folder / "scans/l.txt";
  std::filesystem::create_symlink(cloud, link);
  for (const std::string& output : {scan, link}) {
    const Result result = Kelvra({"export", folder / "scans", "-o", output});
    EXPECT_TRUE(result.status == 1 && Holds(result.err, "it is one of the files to read")) << result.err;
  }
  EXPECT_EQ(TempFolder::Read(scan) + TempFolder::Read(cloud), std::string(kPoints) + kPoints);
  std::filesystem::create_directories(folder / "kelvra/preferences.json");
  EXPECT_EQ(RunProgram("kelvra", {"prefs", "set", "ca_file", "x"}, folder / "").status, 1)
      << "nothing is kept";
  for (int run = 0; run < 2; ++run) // what is not read with the folder may be made again
    EXPECT_TRUE(Holds(Kelvra({"save", folder / "scans", "-o", folder / "scans/all.scene"}).out, "written"));
}

TEST(Scene, DamagedScenesAreRefusedWithOneLine) {
  const TempFolder folder;
  const std::string scene = folder / "c.scene", bad = folder / "bad.scene";
  ASSERT_EQ(Kelvra({"save", folder.Write("c.xyz", kPoints), "-o", scene}).status, 0);
  folder.Write("bad.scene", TempFolder::Read(scene).substr(0, 1000));
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"scene", bad}, {"info", bad}, {"export", bad, "-o", folder / "x.txt"}}) {
    const Result result = Kelvra(arguments);
    EXPECT_EQ(result.status, 1) << arguments[0] << result.err;
    EXPECT_NE(result.err.find("bad.scene"), std::string::npos) << result.err;
  }
}

TEST(Scene, PrintsEveryValueInFileOrderAndWhereLinksLead) {
  const TempFolder folder;
  const std::string cloud = folder.Write("c.xyz", kPoints), scene = folder / "c.scene";
  ASSERT_EQ(Kelvra({"save", cloud, "-o", scene}).status, 0);
  const Result result = Kelvra({"scene", "--json", scene});
  ASSERT_EQ(result.status, 0) << result.err;
  std::vector<nlohmann::json> arrays, links;
  const std::function<void(const nlohmann::json&)> collect = [&](const nlohmann::json& value) {
    if (value.is_object() && value.contains("sum")) arrays.push_back(value);
    if (value.is_object() && value.contains("link")) links.push_back(value);
    if (value.is_structured())
      for (const auto& part : value) collect(part);
  };
  collect(result.Json());
  ASSERT_EQ(arrays.size(), 4u);
  // x, height, y of each point.
  EXPECT_EQ(arrays[0], nlohmann::json::parse(
                           R"({"type":"sreal","count":9,"sum":31.5,"first":[1.0,3.0,2.0,4.0,6.0,5.0],
                               "last":[4.0,6.0,5.0,-7.0,9.0,8.5]})"));
  EXPECT_EQ(arrays[2]["first"][0], 2560.0);
  EXPECT_EQ(arrays[3]["count"], 3);
  // The selection and the video post lead to the cloud, which stands behind them in the file.
  ASSERT_EQ(links.size(), 2u);
  EXPECT_EQ(links[0], links[1]);
  EXPECT_EQ(links[0]["link"], "Kelvra Point Cloud");
  const std::string text = Kelvra({"scene", scene}).out;
  EXPECT_NE(text.find(" link " + links[0].dump()), std::string::npos) << text;
  EXPECT_NE(text.find("object " + links[0]["type"].dump() + " \"Kelvra Point Cloud\""), std::string::npos)
      << text;
}

TEST(Terminal, NamesOfFilesCannotCommandIt) {
  const TempFolder folder;
  const std::string nasty = "\x1b]0;x\x07\n\xe2\x80\xae\xc2\x9b\x7f";
  const std::string shown = "\\x1b]0;x\\x07\\x0a\\u202e\\u009b\\x7f";
  const std::string cloud = folder.Write(nasty + ".xyz", kPoints), scene = folder / nasty + ".scene",
                    missing = folder / nasty;
  const std::vector<std::string> runs[] = {
      {"save", cloud, "-o", scene},
      {"info", scene, missing},
      {"info", "--json", cloud, missing},
      {"scene", missing},
      {"export", cloud, "-o", scene + ".txt"},
      {"convert", cloud, "--mode", "point", "-o", cloud + ".ply"},
      {"render", cloud, "-o", cloud + ".png", "--size", "8x8"},
      {"render", cloud, "-o", missing},
      {"save", cloud, "-o", missing + "/x"},
      {"info", cloud, "--set", nasty},
      {nasty},
  };
  for (const std::vector<std::string>& run : runs) {
    const Result result = Kelvra(run);
    const std::string printed = result.out + result.err;
    const bool json = run.size() > 1 && run[1] == "--json";
    EXPECT_NE(printed.find(json ? "\\u202e\\u009b\\u007f" : shown), std::string::npos) << printed;
    for (const char* control : {"\x1b", "\x07", "\x7f", "\xe2\x80", "\xc2\x9b"})
      EXPECT_EQ(printed.find(control), std::string::npos) << run[0];
    if (json) {
      EXPECT_EQ(result.Json()["files"][0]["path"], cloud);
    }
  }
}

TEST(Table, IsReadByTheNamesOfItsColumns) {
  const TempFolder folder;
  const std::string table = folder.Write(
      "t.csv", "\xef\xbb\xbfid;Height;Northing;Easting;R;G;B\n7;3,25;5570000,5;691000,125;1;0,5;0\n");
  ASSERT_EQ(Kelvra({"export", table, "--survey", "-o", folder / "t.txt", "--quiet"}).out, "");
  EXPECT_EQ(TempFolder::Read(folder / "t.txt"), "691000.125 5570000.5 3.25 254 127 0\n");
  EXPECT_EQ(Kelvra({"info", "--json", table}).Json()["files"][0]["path"], table);
  EXPECT_EQ(Kelvra({"info", folder.Write("short.csv", "N,E,H [m]\n1,2,3\n")}).status, 0);
  const std::pair<const char*, const char*> mistakes[] = {
      {"x,y,h,alt\n", "line 1, column 4: both \"h\" and \"alt\" could be z; name one of them z"},
      {"x,y\n1,2\n", "line 1: no column is named z; expected the names of the columns, x, y and z"},
      {"1,5;2;3\n", "tabs: add the line x;y;z above it"},
      {"id,Lat,Lon,z\n", "line 1: latitudes and longitudes are degrees, expected x, y and z in metres"},
      {"x,y,z\n1,2,3\n1,2,3m\n", "line 3, column 3: \"3m\" is not a number"},
      {"x,y,z\n1,2\n", "line 2 has 2 columns, expected at least 3 as in the header"},
      {"x,y,z,X\n", "line 1, column 4: the second x of the header"},
      {"", "the file is empty"}};
  for (const auto& [content, reason] : mistakes) {
    const Result result = Kelvra({"info", folder.Write("bad.csv", content)});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(Holds(result.err, reason)) << result.err;
  }
}

TEST(Usage, FilesAreWhatTheyHoldAndNotWhatTheirNamesSay) {
  const TempFolder folder;
  std::filesystem::create_directory(folder / "in");
  const struct {
    const char *name, *content, *what;
  } cases[] = {{"a.ply", kPoints, "its name says PLY, but it holds lines of numbers (--as xyz reads them)"},
               {"b.las", kPoints, "its name says LAS, but it holds lines of numbers (--as xyz reads them)"},
               {"c.xyz", "LASF", "its name says XYZ, but it holds LAS or LAZ data (--as las reads it)"},
               {"d.xyz", "\x89PNG 1 2 3\n", "its name says XYZ, but it is a picture, expected LAS"},
               {"e.ply", "ply\n1 2 3\n", "this is a PLY file, expected LAS, LAZ, XYZ or PTS (--as xyz reads"},
               {"f.txt", "X,Y,Z\n1,2,3\n", "; to load it, name it .csv\n"},
               {"g.txt", "1;2;3\n", "; to load it, name it .csv and add the line x;y;z above it\n"}};
  for (const auto& c : cases) {
    const std::string err = Kelvra({"info", folder.Write(c.name, c.content)}).err;
    EXPECT_TRUE(Holds(err, c.what)) << err;
    folder.Write(std::string("in/") + c.name, c.content);
  }
  EXPECT_EQ(Kelvra({"info", folder / "a.ply", "--as", "xyz"}).status, 0);
  const std::string err = Kelvra({"info", folder / "in"}).err;
  for (const char* hint :
       {"b.las: its", "c.xyz: its", "f.txt: no line", "a.ply: its", "1 file is not a point cloud: e.ply"})
    EXPECT_TRUE(Holds(err, hint)) << err;
}

TEST(Usage, SettingsWithoutEffectAreNamed) {
  const TempFolder folder;
  const std::string cloud = folder.Write("c.xyz", kPoints), scene = folder / "c.scene";
  ASSERT_EQ(Kelvra({"save", cloud, "-o", scene}).status, 0);
  EXPECT_TRUE(Holds(Kelvra({"info", scene, "--set", "load_nth=2"}).err, "load_nth: has no effect here"));
  EXPECT_TRUE(Holds(Kelvra({"export", cloud, "-o", folder / "c.txt", "--set", "point_share=50%"}).err,
                    "point_share: has no effect here"));
  EXPECT_TRUE(Holds(Kelvra({"convert", cloud, "--mode", "points"}).out, "nothing was written: -o FILE"));
  const Result dark = Kelvra({"render", cloud, "-o", folder / "c.png", "--size", "8x8", "--set",
                              "point_share=40%", "--light", "point:9000,0,9000"});
  EXPECT_TRUE(Holds(dark.out, ", 1 of 3 points, ")) << dark.out;
  EXPECT_TRUE(Holds(dark.err, "--light point: lies ")) << dark.err;
}

TEST(Usage, SuffixesOfOtherFormatsAreRefused) {
  const TempFolder folder;
  const std::string cloud = folder.Write("c.xyz", kPoints);
  for (const auto& [command, output] :
       {std::pair("export", "x.LAS"), {"snapshot", "x.jpg"}, {"save", "x.ply"}}) {
    const Result result = Kelvra({command, cloud, "-o", folder / output});
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(Holds(result.err, std::string(output) + ": ") && Holds(result.err, "expected a name"))
        << result.err;
  }
  EXPECT_TRUE(Holds(Kelvra({"info", cloud, "--wrong"}).err, "(usage: kelvra info FILE... [OPTIONS]"));
}

TEST(Usage, MistakesExitWithTwo) {
  EXPECT_EQ(Kelvra({}).status, 2);
  EXPECT_EQ(Kelvra({"fly"}).status, 2);
  EXPECT_EQ(Kelvra({"info"}).status, 2);
  EXPECT_EQ(Kelvra({"save", "x.xyz"}).status, 2);
  EXPECT_EQ(Kelvra({"--help"}).status, 0);
  EXPECT_EQ(Kelvra({"info", "/nonexistent.laz"}).status, 1);
}

} // namespace
} // namespace cli_test
