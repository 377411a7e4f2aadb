# The module is loaded from its file; points are handed to it, and its store is looked at, with its own types.
set(libraries kelvra_core kelvra_host)
add_dependencies(${target} kelvra_module)
find_package(embree 3 QUIET)
if(TARGET embree)
  target_compile_definitions(${target} PRIVATE HAVE_SURFACES=1)
endif()
