# The module is loaded from its file, as the application does.
set(libraries kelvra_host)
add_dependencies(${target} kelvra_module)
target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/res ${PROJECT_SOURCE_DIR}/res/description)
find_package(embree 3 QUIET)
if(TARGET embree)
  target_compile_definitions(${target} PRIVATE HAVE_SURFACES=1)
endif()
