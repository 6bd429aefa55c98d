# clang-tidy over one source, by its command in COMMANDS/compile_commands.json. Leaves STAMP where there is no finding,
# and says nothing then: the tool itself counts what it has passed over in the headers of the system.
#
#   cmake -DCLANG_TIDY=program -DSOURCE=file -DCOMMANDS=dir -DSTAMP=file -P Tidy.cmake
cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND ${CLANG_TIDY} --quiet -p ${COMMANDS} ${SOURCE}
                RESULT_VARIABLE result OUTPUT_VARIABLE findings ERROR_VARIABLE complaints)
if(result)
    message(FATAL_ERROR "${findings}${complaints}")
endif()
file(TOUCH ${STAMP})
