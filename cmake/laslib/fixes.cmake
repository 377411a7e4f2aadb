# Repairs of LASlib and LASzip, applied to the unpacked sources. Each names the text it replaces; a text that is not found
# exactly as often as expected means another version of the library: the repair is left out and the build says so.

function(kelvra_laslib_replace file count from to)
  file(READ ${file} text)
  string(LENGTH "${text}" before)
  string(LENGTH "${from}" length)
  string(REPLACE "${from}" "" without "${text}")
  string(LENGTH "${without}" after)
  math(EXPR found "(${before} - ${after}) / ${length}")
  if(NOT found EQUAL count)
    message(WARNING
      "LASlib: a repair does not fit this version of the library: a damaged LAZ file may crash the program.\n"
      "  ${file} holds ${found} times, not ${count} times: ${from}")
    return()
  endif()
  string(REPLACE "${from}" "${to}" text "${text}")
  file(WRITE ${file} "${text}")
endfunction()

function(kelvra_laslib_fix root)
  # Four bytes 0xFF at the start of a compressed stream break the decoder's invariant (value below length) that keeps
  # its table look-ups in bounds. No encoder writes them.
  kelvra_laslib_replace(${root}/LASzip/arithmeticdecoder.cpp 1
    [=[value |= (instream->getByte());
]=]
    [=[value |= (instream->getByte());
    if (value == AC__MaxLength) throw 4711;
]=])

  # Encoders switch to another sequence of GPS times once per point at most; damaged bytes switch on and on, which would
  # recurse until the stack is used up.
  set(guard [=[
namespace {
struct SwitchGuard
{
  static thread_local int depth;
  SwitchGuard() { if (depth >= 8) throw 4711; depth++; }
  ~SwitchGuard() { depth--; }
};
thread_local int SwitchGuard::depth = 0;
}
]=])
  foreach(reader "v2=read(item, context)" "v3=read_gps_time()" "v4=read_gps_time()")
    string(REGEX MATCH "^(v.)=(.*)$" matched ${reader})
    set(file ${root}/LASzip/lasreaditemcompressed_${CMAKE_MATCH_1}.cpp)
    set(call ${CMAKE_MATCH_2})
    kelvra_laslib_replace(${file} 2 "&3;\n      ${call};" "&3;\n      { SwitchGuard guard; ${call}; }")
    kelvra_laslib_replace(${file} 1 "#include <assert.h>\n" "#include <assert.h>\n${guard}")
  endforeach()

  # One of the nine layers of a point is never given back.
  foreach(version v3 v4)
    kelvra_laslib_replace(${root}/LASzip/lasreaditemcompressed_${version}.cpp 1
      [=[    delete dec_user_data;
]=]
      [=[    delete dec_user_data;
    delete dec_point_source;
    delete instream_point_source;
]=])
  endforeach()
endfunction()
