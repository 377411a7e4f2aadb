# Tests that a cross build for Windows leaves out, file by file, each with its reason. Configuring prints the list.
set(left_out
  "gl|there is no viewport"
  "cli|runs programs through a POSIX shell, the Linux test_program does the same with kelvra.exe"
  "manual|runs programs through a POSIX shell, the Linux test_program reads the same manual"
  "fence|sets the environment as POSIX does, and the Linux test refuses the same requests"
  "layers|reads sources and Linux libraries, module_exports reads the export table here"
  "scene/replacing_file_test.cpp|links, pipes, locks and rights of POSIX"
  "net/http_get_test.cpp|needs servers on POSIX sockets, the Linux test_core does the same with kelvra.exe"
  "net/preferences_test.cpp|needs servers on POSIX sockets"
  "net/program_test.cpp|needs servers on POSIX sockets, the Linux test_core does the same with kelvra.exe"
  "net/reprojection_test.cpp|needs servers on POSIX sockets"
)

# kelvra_leave_out(area sources): takes the files of an area that cannot run here out of the list.
function(kelvra_leave_out area list)
  if(NOT CMAKE_CROSSCOMPILING)
    return()
  endif()
  foreach(entry IN LISTS left_out)
    string(REGEX REPLACE "\\|.*" "" what "${entry}")
    string(REGEX REPLACE "^[^|]*\\|" "" reason "${entry}")
    if(what STREQUAL area)
      message(STATUS "Left out: tests/${what}: ${reason}")
      set(${list} "")
    elseif(what MATCHES "^${area}/")
      message(STATUS "Left out: tests/${what}: ${reason}")
      list(FILTER ${list} EXCLUDE REGEX "/${what}$")
    endif()
  endforeach()
  set(${list} "${${list}}" PARENT_SCOPE)
endfunction()
