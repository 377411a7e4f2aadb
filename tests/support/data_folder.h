// Real clouds of many makers, each with what other readers found in it as NAME.json.
#pragma once

#include "support/common.h"

#include <nlohmann/json.hpp>

struct RealCloud {
  std::string path;
  nlohmann::json facts;
};

/** KELVRA_TEST_DATA of the environment, else shared/data beside the checkout. */
inline std::string DataFolder() {
  const char* folder = std::getenv("KELVRA_TEST_DATA");
  return folder ? folder : KELVRA_SOURCE_DIR "/../shared/data";
}

inline std::vector<RealCloud> RealClouds() {
  std::vector<RealCloud> clouds;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(DataFolder(), missing))
    if (entry.path().extension() == ".json")
      clouds.push_back({entry.path().string().substr(0, entry.path().string().size() - 5),
                        nlohmann::json::parse(std::ifstream(entry.path()))});
  return clouds;
}

inline bool IsLas(const std::string& path) {
  const std::string suffix = std::filesystem::path(path).extension().string();
  return suffix == ".las" || suffix == ".laz";
}
