# Takes the symbols, which nobody reads there, out of every program and library in FOLDER.
file(GLOB_RECURSE files ${FOLDER}/*.exe ${FOLDER}/*.dll)
execute_process(COMMAND ${STRIP} --strip-all ${files} COMMAND_ERROR_IS_FATAL ANY)
