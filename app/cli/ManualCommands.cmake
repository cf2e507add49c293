# Writes the help of each command of the tool as a help2man include file (a COMMANDS section).
#   cmake -DPROGRAM=kolvane -DOUTPUT=commands.h2m -P ManualCommands.cmake
set(text "[COMMANDS]\n")
foreach(command show get save check export diff types raw compat)
  execute_process(COMMAND ${PROGRAM} ${command} --help OUTPUT_VARIABLE help)
  string(REPLACE "\\" "\\\\" help "${help}")
  string(APPEND text ".SS ${command}\n.nf\n${help}.fi\n")
endforeach()
file(WRITE ${OUTPUT} "${text}")
