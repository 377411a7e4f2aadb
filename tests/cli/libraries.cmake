# The program is run as a user runs it; only its pictures and JSON are looked at here.
set(libraries kelvra_host nlohmann_json::nlohmann_json)
add_dependencies(${target} kelvra_cli make_cloud)
if(TARGET LASlib::LASlib)
  target_compile_definitions(${target} PRIVATE KELVRA_HAVE_LASLIB=1)
endif()
