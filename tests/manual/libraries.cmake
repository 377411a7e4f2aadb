# Reads the manual, the resources and the sources, and runs the program as the manual says.
set(libraries kelvra_host nlohmann_json::nlohmann_json)
target_sources(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/cli/program_run.cpp)
add_dependencies(${target} kelvra_cli kelvra_module make_cloud)
if(TARGET LASlib::LASlib)
  target_compile_definitions(${target} PRIVATE KELVRA_HAVE_LASLIB=1)
endif()
