# A provider library loaded with RTLD_GLOBAL must not bring its own strong
# definitions of Pegasus:: symbols: they would clash with the server's. Inline
# functions from the headers are weak and harmless.
#
# cmake -DNM=<nm> -DLIBRARY=<file> -P CheckNoPegasusDefinitions.cmake
execute_process(COMMAND ${NM} -C --defined-only ${LIBRARY}
                OUTPUT_VARIABLE symbols RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${NM} failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "[^\n]* [TDBR] Pegasus::[^\n]*" strong "${symbols}")
if(strong)
  list(JOIN strong "\n" listing)
  message(FATAL_ERROR "${LIBRARY} defines Pegasus symbols:\n${listing}")
endif()
message(STATUS "${LIBRARY}: no strong Pegasus:: definitions")
