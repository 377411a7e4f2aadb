set(libraries kelvra_las nlohmann_json::nlohmann_json)
