set(libraries kelvra_host)

# Small modules that the tests load: one sound, the others broken in one way each.
function(host_test_module variant)
  add_library(host_test_${variant} MODULE ${folder}/modules/${ARGN})
  kelvra_warnings(host_test_${variant})
  string(TOUPPER ${variant} VARIANT)
  target_compile_definitions(host_test_${variant} PRIVATE MODULE_${VARIANT}=1)
  target_link_libraries(host_test_${variant} PRIVATE kelvra_sdk_types)
  set_target_properties(host_test_${variant} PROPERTIES PREFIX "" SUFFIX ".so"
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/host_modules)
  add_dependencies(${target} host_test_${variant})
endfunction()

foreach(variant sound message_refused start_refused start_throws)
  host_test_module(${variant} plugin_module.cpp)
  target_sources(host_test_${variant} PRIVATE ${PROJECT_SOURCE_DIR}/sdk/c4d_main.cpp)
endforeach()
foreach(variant no_entry wrong_version newer_host entry_throws)
  host_test_module(${variant} bare_module.cpp)
endforeach()
target_compile_definitions(${target} PRIVATE HOST_TEST_MODULES="${CMAKE_BINARY_DIR}/tests/host_modules")
