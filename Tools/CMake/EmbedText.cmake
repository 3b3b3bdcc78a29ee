# Turns text files, one after the other, into one C++ source that defines a std::string_view of the whole text.
# The text is NUL-terminated beyond its end, so data() serves as a C string, and it is written byte by byte, so no
# limit of string literals applies.
#
#   include(EmbedText)
#   embed_text(OUTPUT file.cpp NAME s_text NAMESPACE Somewhere INPUTS a.js b.js)
#
# The user declares it as `namespace Somewhere { extern const std::string_view s_text; }`. As a script:
#   cmake -DOUTPUT=file.cpp -DNAME=s_text -DNAMESPACE=Somewhere "-DINPUTS=a.js;b.js" -P EmbedText.cmake

if(NOT CMAKE_SCRIPT_MODE_FILE)
  set(EMBED_TEXT_SCRIPT ${CMAKE_CURRENT_LIST_FILE})

  function(embed_text)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "OUTPUT;NAME;NAMESPACE" "INPUTS")
    add_custom_command(
      OUTPUT ${arg_OUTPUT}
      COMMAND ${CMAKE_COMMAND} -DOUTPUT=${arg_OUTPUT} -DNAME=${arg_NAME} -DNAMESPACE=${arg_NAMESPACE}
              "-DINPUTS=${arg_INPUTS}" -P ${EMBED_TEXT_SCRIPT}
      DEPENDS ${arg_INPUTS} ${EMBED_TEXT_SCRIPT}
      COMMENT "Embedding ${arg_NAME}"
      VERBATIM)
  endfunction()
  return()
endif()

foreach(required OUTPUT NAME NAMESPACE INPUTS)
  if(NOT ${required})
    message(FATAL_ERROR "EmbedText: ${required} is not given")
  endif()
endforeach()

set(hex "")
foreach(input IN LISTS INPUTS)
  file(READ ${input} bytes HEX)
  string(REGEX MATCH "^(..)*00" nul "${bytes}")
  if(nul)
    message(FATAL_ERROR "EmbedText: ${input} contains a NUL")
  endif()
  # Nobody can serve the source map that a text names, and an inspector would ask the page's server for it.
  string(REGEX REPLACE "2f2f2320736f757263654d617070696e6755524c3d([1-9a-f][0-9a-f]|0[0-9b-f])*" "" bytes "${bytes}")
  # The line end keeps a comment on the last line of one file from swallowing the first line of the next.
  string(APPEND hex "${bytes}0a")
endforeach()

string(REGEX REPLACE "(................................)" "\\1\n" hex "${hex}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")

file(WRITE ${OUTPUT}.new "// Generated from text files; edit those.
#include <string_view>

namespace ${NAMESPACE} {

extern const std::string_view ${NAME};

namespace {
constexpr char s_bytes[] = {
${bytes}
'\\0'};
} // namespace

const std::string_view ${NAME}(s_bytes, sizeof(s_bytes) - 1);

} // namespace ${NAMESPACE}
")
file(RENAME ${OUTPUT}.new ${OUTPUT})
