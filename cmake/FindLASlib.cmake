# LASlib, the library that reads LAS and LAZ. Makes the target LASlib::LASlib.
#
# 1. An installed LASlib is used when its headers, LASzip's own included, and its library are found.
# 2. Otherwise its sources are taken out of the R package rlas, which R fetches from wherever R itself is configured to
#    fetch packages. The package is kept in KELVRA_DEPS_DIR, which all build folders share. The environment variable
#    KELVRA_RLAS names a package file for a machine without network.
#
# Reading LAS is the main job: a build without the library stops here, unless the environment variable
# KELVRA_WITHOUT_LASLIB is 1.
#
# The sources want R's console and random numbers only: the two small headers in laslib/R_ext stand in for them, so that
# nothing of R is compiled or linked. laslib/fixes.cmake repairs what damaged files can break in the decoder.

set(KELVRA_DEPS_DIR ${CMAKE_SOURCE_DIR}/build/deps CACHE PATH "Where fetched source packages are kept")
option(KELVRA_LASLIB_INSTALLED "Use an installed LASlib when there is one" ON)

include(${CMAKE_CURRENT_LIST_DIR}/laslib/package.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/laslib/fixes.cmake)
set(laslib_own_files ${CMAKE_CURRENT_LIST_DIR}/laslib)

if("$ENV{KELVRA_WITHOUT_LASLIB}" STREQUAL "1")
  message(WARNING "THIS BUILD CANNOT READ LAS AND LAZ FILES: KELVRA_WITHOUT_LASLIB is 1.")
  set(LASlib_FOUND FALSE)
  return()
endif()

if(KELVRA_LASLIB_INSTALLED AND NOT TARGET LASlib::LASlib)
  find_path(LASLIB_INCLUDE_DIR lasreader.hpp PATH_SUFFIXES LASlib laslib lastools)
  find_path(LASZIP_INCLUDE_DIR arithmeticdecoder.hpp PATH_SUFFIXES LASlib LASzip laslib lastools)
  find_library(LASLIB_LIBRARY NAMES LASlib las)
  mark_as_advanced(LASLIB_INCLUDE_DIR LASZIP_INCLUDE_DIR LASLIB_LIBRARY)
  if(LASLIB_INCLUDE_DIR AND LASZIP_INCLUDE_DIR AND LASLIB_LIBRARY)
    message(STATUS "LASlib: installed, ${LASLIB_LIBRARY} (its messages go to standard error)")
    add_library(LASlib::LASlib UNKNOWN IMPORTED)
    set_target_properties(LASlib::LASlib PROPERTIES
      IMPORTED_LOCATION "${LASLIB_LIBRARY}"
      INTERFACE_INCLUDE_DIRECTORIES "${LASLIB_INCLUDE_DIR};${LASZIP_INCLUDE_DIR}")
  endif()
endif()

if(NOT TARGET LASlib::LASlib)
  kelvra_laslib_package(laslib_package laslib_problem)
  if(laslib_package)
    kelvra_laslib_unpack(${laslib_package} laslib_root laslib_problem)
  endif()
  if(laslib_root)
    file(GLOB laslib_sources CONFIGURE_DEPENDS ${laslib_root}/LASlib/*.cpp ${laslib_root}/LASzip/*.cpp)
    # lasvlr.cpp and mydefs.cpp hold nothing that the others need.
    list(FILTER laslib_sources EXCLUDE REGEX "/(lasvlr|mydefs)\\.cpp$")
    add_library(kelvra_laslib STATIC ${laslib_sources} ${laslib_own_files}/messages.cpp
      ${laslib_own_files}/memory.cpp)
    add_library(LASlib::LASlib ALIAS kelvra_laslib)
    target_include_directories(kelvra_laslib SYSTEM PUBLIC
      ${laslib_own_files} ${laslib_root}/LASlib ${laslib_root}/LASzip)
    target_compile_definitions(kelvra_laslib PRIVATE NDEBUG PUBLIC KELVRA_LASLIB_BUILT=1)
    set_target_properties(kelvra_laslib PROPERTIES
      POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON EXPORT_COMPILE_COMMANDS OFF)
    set(laslib_first -include)
    if(MSVC)
      set(laslib_first /FI)
    endif()
    set_source_files_properties(${laslib_sources} PROPERTIES
      COMPILE_OPTIONS "${laslib_first};${laslib_own_files}/reserved_new.h")
    if(MSVC)
      target_compile_options(kelvra_laslib PRIVATE /w)
    else()
      # The decoder counts on wrapping integers and reads unaligned fields; a sanitizer would stop it on sound files.
      # A decoder that is not optimised is of no use in any build type.
      target_compile_options(kelvra_laslib PRIVATE -w -fwrapv $<$<CONFIG:Debug>:-O1>)
      if(KELVRA_SANITIZE MATCHES "undefined")
        target_compile_options(kelvra_laslib PRIVATE
          -fno-sanitize=signed-integer-overflow,shift,alignment,vptr,float-cast-overflow)
      endif()
    endif()
  endif()
endif()

include(FindPackageHandleStandardArgs)
if(TARGET LASlib::LASlib)
  set(LASlib_target LASlib::LASlib)
endif()
find_package_handle_standard_args(LASlib REQUIRED_VARS LASlib_target
  REASON_FAILURE_MESSAGE "${laslib_problem}")
if(NOT LASlib_FOUND)
  message(FATAL_ERROR
    "\n  LASlib is missing, so LAS and LAZ files could not be read: ${laslib_problem}\n"
    "  Two ways on: let R reach another CRAN mirror (options(repos=...) in ~/.Rprofile),\n"
    "  or get the source package rlas (rlas_1.9.5.tar.gz) elsewhere and name it: KELVRA_RLAS=/path/to/rlas_1.9.5.tar.gz ./test.sh\n"
    "  KELVRA_WITHOUT_LASLIB=1 builds the rest: XYZ and PTS text only.\n")
endif()
