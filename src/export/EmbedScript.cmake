# cmake -DESBUILD=... -DSOURCE=script.js -DTEMPLATE=Script.h.in -DHEADER=Script.h -P EmbedScript.cmake
# Minifies a script and writes a header that has it as one line of text.
execute_process(COMMAND ${ESBUILD} --minify --target=es2017 --charset=ascii --legal-comments=none
                        --log-level=warning ${SOURCE}
                OUTPUT_VARIABLE script OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" "" script "${script}")
if(NOT script MATCHES "^var stIsIE=!1;.*window\\.onload=sorttable\\.init;$")
  message(FATAL_ERROR "${SOURCE}: does not begin and end as pages expect once it is minified")
endif()
configure_file(${TEMPLATE} ${HEADER} @ONLY)
