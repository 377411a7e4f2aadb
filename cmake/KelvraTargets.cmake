# One warning set and one sanitizer switch for every target of ours.

set(KELVRA_SANITIZE "" CACHE STRING "Sanitizers for every target, e.g. address,undefined or thread")
option(KELVRA_WERROR "Treat warnings as errors" ON)

if(KELVRA_SANITIZE)
  add_compile_options(-fsanitize=${KELVRA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KELVRA_SANITIZE})
  # GCC takes the checks that sanitizers add inside std::regex and std::function for reads of unset members.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()

function(kelvra_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wno-missing-field-initializers
    $<$<BOOL:${KELVRA_WERROR}>:-Werror>)
endfunction()

# kelvra_library(name SOURCES... ): a static library with our warnings; every folder globs its own sources.
function(kelvra_library target)
  add_library(${target} STATIC ${ARGN})
  kelvra_warnings(${target})
endfunction()
