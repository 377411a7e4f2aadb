set(libraries kelvra_text nlohmann_json::nlohmann_json)
