// make_cloud: writes a generated landscape of any size in any format that the module reads.
#include "host/base/printable.h"
#include "host/base/replacing_file.h"
#include "host/base/user_break.h"
#include "tools/cloud_writer.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

int main(int argc, char** argv) {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a failed write, not the end
#endif
  host::InstallInterruptHandler();
  CLI::App app("Writes a generated cloud (terrain, buildings, trees) as LAS, LAZ, XYZ or PTS");
  tools::WriterOptions options;
  std::uint64_t seed = 1;
  double extent = 400;
  int colorBits = 16;
  app.add_option("FILE", options.path, "File to write; its suffix chooses the format")->required();
  app.add_option("--points", options.count, "Number of points")
      ->default_val(200000)
      ->check(CLI::Range(1LL, 4000000000LL));
  app.add_option("--format", options.pointFormat, "LAS point format")->check(CLI::Range(0, 10));
  app.add_option("--color-bits", colorBits, "8 or 16 bits in the LAS colour fields")
      ->check(CLI::IsMember({8, 16}));
  app.add_option("--columns", options.columns, "XYZ columns")->check(CLI::IsMember({3, 6, 9}));
  app.add_option("--extent", extent, "Width in metres")->check(CLI::Range(1.0, 100000.0));
  app.add_option("--scale", options.scale, "LAS coordinate step in metres")->check(CLI::Range(1e-6, 10.0));
  app.add_option("--east", options.east, "Easting of the south-west corner");
  app.add_option("--north", options.north, "Northing of the south-west corner");
  app.add_option("--seed", seed, "Another landscape");
  CLI11_PARSE(app, argc, argv);
  options.colorDepth = colorBits == 8 ? tools::ColorDepth::Eight : tools::ColorDepth::Sixteen;
  try {
    const std::unique_ptr<tools::CloudWriter> writer = tools::CloudWriter::Create(options);
    tools::CloudScene scene(seed, options.count, extent);
    for (long long i = 0; i < options.count; ++i) {
      if (host::Interrupted())
        throw std::runtime_error(options.path + ": stopped by the user; nothing was written");
      writer->Write(scene.Point(i));
    }
    writer->Close();
  } catch (const std::exception& e) {
    std::cerr << "make_cloud: " << host::Printable(e.what()) << "\n";
    return 1;
  }
  (host::IsStandardOutput(options.path) ? std::cerr : std::cout)
      << host::Printable(host::OutputName(options.path)) << ": " << options.count << " points\n";
  return 0;
}
