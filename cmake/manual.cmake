# Fills a manual page's template: cmake -DPHNCTL=... -DLABELS=... -DTEMPLATE=... -DPAGE=... -P manual.cmake
execute_process(COMMAND ${PHNCTL} __man OUTPUT_VARIABLE REFERENCE COMMAND_ERROR_IS_FATAL ANY)
configure_file(${TEMPLATE} ${PAGE} @ONLY)
