# Servers on the loopback interface, and the program as a user runs it.
find_package(nlohmann_json REQUIRED)
find_package(OpenSSL REQUIRED)
pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
set(libraries kelvra_core kelvra_host nlohmann_json::nlohmann_json PkgConfig::HTTPLIB OpenSSL::SSL OpenSSL::Crypto)
target_sources(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/cli/program_run.cpp)
target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/res/description)
add_dependencies(${target} kelvra_cli kelvra_module)
