# Runs one command and checks its exit status and output.
#   cmake -DPROGRAM=exe -DARGS="a|b" -DSTATUS=1 [-DSTDOUT=regex] [-DSTDERR=regex] [-DNO_STDERR=1]
#         -P Expect.cmake
string(REPLACE "|" ";" args "${ARGS}")
execute_process(COMMAND ${PROGRAM} ${args} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status STREQUAL STATUS)
  message(FATAL_ERROR "exit status ${status}, expected ${STATUS}\nstdout:\n${out}\nstderr:\n${err}")
endif()
if(DEFINED STDOUT AND NOT out MATCHES "${STDOUT}")
  message(FATAL_ERROR "stdout does not match '${STDOUT}':\n${out}")
endif()
if(DEFINED STDERR AND NOT err MATCHES "${STDERR}")
  message(FATAL_ERROR "stderr does not match '${STDERR}':\n${err}")
endif()
if(NO_STDERR AND NOT err STREQUAL "")
  message(FATAL_ERROR "unexpected stderr:\n${err}")
endif()
