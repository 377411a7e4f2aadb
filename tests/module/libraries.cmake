# The module is loaded from its file, as the application does; only the LAS test files need its reader's headers.
find_package(nlohmann_json REQUIRED)
set(libraries kelvra_host kelvra_las nlohmann_json::nlohmann_json)
add_dependencies(${target} kelvra_module)
