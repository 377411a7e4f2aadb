#include "cli/commands/sequence/fingerprint.h"

#include "cli/session/file_kinds.h"
#include "cli/system/program_path.h"
#include "host/scene/checksum.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

constexpr std::size_t kPiece = 1 << 20;

std::string Hexadecimal(std::uint64_t value) {
  std::string digits(16, '0');
  for (std::size_t i = digits.size(); i-- > 0; value >>= 4) digits[i] = "0123456789abcdef"[value & 15];
  return digits;
}

void AddFile(const std::string& path, host::Checksum& sum) {
  const std::string obstacle = ReadObstacle(path);
  if (!obstacle.empty()) throw std::runtime_error(path + ": " + obstacle);
  std::error_code ignored;
  // Opening a pipe would wait for its writer.
  const bool regular = fs::is_regular_file(fs::u8path(path), ignored);
  std::ifstream file;
  if (regular) file.open(fs::u8path(path), std::ios::binary);
  if (!file.is_open()) throw std::runtime_error(path + ": cannot be read");
  std::vector<char> piece(kPiece);
  do {
    file.read(piece.data(), (std::streamsize)piece.size());
    sum.Update(piece.data(), (std::size_t)file.gcount());
  } while (file);
  if (file.bad()) throw std::runtime_error(path + ": cannot be read to its end");
}

} // namespace

std::string FingerprintOf(const std::string& text) {
  host::Checksum sum;
  sum.Update(text.data(), text.size());
  return Hexadecimal(sum.Value());
}

std::string FingerprintOfFiles(const std::vector<std::string>& paths) {
  host::Checksum sum;
  if (!sum.Valid()) throw std::bad_alloc();
  for (const std::string& path : paths) {
    std::error_code ignored;
    const bool folder = fs::is_directory(fs::u8path(path), ignored);
    const std::vector<std::string> files = folder ? CloudFiles(path) : std::vector<std::string>{path};
    for (const std::string& file : files) {
      // The length keeps the end of one file apart from the start of the next.
      const std::uintmax_t length = fs::file_size(fs::u8path(file), ignored);
      sum.Update(&length, sizeof length);
      AddFile(file, sum);
    }
  }
  return Hexadecimal(sum.Value());
}

std::string FingerprintOfProgram() {
#ifdef _WIN32
  const char* const module = "kelvra.cdl64";
#else
  const char* const module = "kelvra.so";
#endif
  static const std::string fingerprint =
      FingerprintOfFiles({ProgramPath(), (fs::u8path(ProgramFolder()) / module).u8string()});
  return fingerprint;
}

nlohmann::json PictureOptions(const CLI::App& command) {
  // How a picture is made and where it goes, not what it shows; the files count by their bytes.
  static const std::set<std::string> others = {
      "FILE",    "--output", "--force", "--verbose",   "--threads",     "--fault", "--frames",
      "--local", "--slurm",  "--nodes", "--partition", "--sbatch",      "--chunk", "--part",
      "--quiet", "--record", "--pixel", "--pixel-of",  "--print-camera"};
  nlohmann::json options = nlohmann::json::object();
  for (const CLI::Option* option : command.get_options()) {
    const std::vector<std::string>& names = option->get_lnames();
    const std::string name = names.empty() ? option->get_name() : "--" + names[0];
    if (option->count() > 0 && !others.count(name)) options[name] = option->results();
  }
  return options;
}

} // namespace cli
