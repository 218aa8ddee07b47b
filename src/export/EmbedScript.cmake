# cmake -DESBUILD=... -DSOURCE=script.js -DTEMPLATE=Script.h.in -DHEADER=Script.h -P EmbedScript.cmake
# Minifies a script and writes a header that has it as one line of text.
execute_process(COMMAND ${ESBUILD} --minify --target=es2017 --charset=ascii --legal-comments=none
                        --log-level=warning ${SOURCE}
                OUTPUT_VARIABLE script OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" "" script "${script}")
if(NOT script MATCHES "^var stIsIE=!1;.*window\\.onload=sorttable\\.init;$")
  message(FATAL_ERROR "${SOURCE}: does not begin and end as pages expect once it is minified")
endif()
# CMake has no base64: three bytes, six digits of the hash, are four characters.
set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
string(SHA256 digits "${script}")
set(hash)
foreach(at RANGE 0 60 6)
  string(SUBSTRING "${digits}00" ${at} 6 group)
  foreach(shift 18 12 6 0)
    math(EXPR place "(0x${group} >> ${shift}) & 63")
    string(SUBSTRING ${alphabet} ${place} 1 character)
    string(APPEND hash ${character})
  endforeach()
endforeach()
string(SUBSTRING ${hash} 0 43 hash)  # 256 bits are 43 characters and a sign that fills
string(APPEND hash =)
configure_file(${TEMPLATE} ${HEADER} @ONLY)
