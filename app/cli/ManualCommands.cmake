# Writes the sections help2man cannot take from the tool's help as an include file: each
# command's help (a COMMANDS section, without the examples every command repeats), the examples
# laid out one a paragraph, and the exit status.
#   cmake -DPROGRAM=kolvane -DOUTPUT=commands.h2m -P ManualCommands.cmake
set(text "[COMMANDS]\n")
foreach(command show get save check export diff types raw compat schedule
                "xif import" "xif show" "xif export")
  separate_arguments(words UNIX_COMMAND "${command}")
  execute_process(COMMAND ${PROGRAM} ${words} --help OUTPUT_VARIABLE help)
  string(FIND "${help}" "\nExamples:" examples)
  if(examples GREATER -1)
    string(SUBSTRING "${help}" 0 ${examples} help)
    string(APPEND help "\n")
  endif()
  string(REPLACE "\\" "\\\\" help "${help}")
  if(command MATCHES " ")
    string(APPEND text ".SS \"${command}\"\n.nf\n${help}.fi\n")
  else()
    string(APPEND text ".SS ${command}\n.nf\n${help}.fi\n")
  endif()
endforeach()
# The examples of the help's footer, each a command and what it does.
execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help)
string(FIND "${help}" "Examples:\n" at)
string(SUBSTRING "${help}" ${at} -1 examples)
string(REPLACE "Examples:\n" "" examples "${examples}")
string(REPLACE "\n" ";" lines "${examples}")
string(APPEND text "[=EXAMPLES]\n")
foreach(line IN LISTS lines)
  string(STRIP "${line}" line)
  if(line STREQUAL "")
    continue()
  endif()
  string(REGEX MATCH "^(.*[^ ])   +(.*)$" parts "${line}")
  if(parts)
    string(APPEND text ".TP\n.B ${CMAKE_MATCH_1}\n${CMAKE_MATCH_2}\n")
  else()
    string(APPEND text ".TP\n.B ${line}\n")
  endif()
endforeach()
string(APPEND text "[EXIT STATUS]
.TP
.B 0
Done; for diff, the two documents are equal; for check, no finding is an error.
.TP
.B 1
A file could not be read or written, a value was refused, check found an error, or diff found a
difference.
.TP
.B 2
Wrong usage: an unknown command or option, a missing argument; for diff, a file that is neither
a profile nor a values document.
")
file(WRITE ${OUTPUT} "${text}")
