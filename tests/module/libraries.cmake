# The module is loaded from its file, as the application does; only the LAS test files need its reader's headers.
set(libraries kelvra_host kelvra_las nlohmann_json::nlohmann_json)
add_dependencies(${target} kelvra_module)
# These load and unload the module again and again; the leak sanitizer stumbles over the thread-local memory of what is gone.
set(test_properties ENVIRONMENT LSAN_OPTIONS=use_tls=0)
