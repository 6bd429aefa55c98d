# Formats all sources, those of the tests included, or, with CHECK, fails on those that are not formatted.
#
#   cmake -DCLANG_FORMAT=program -DSOURCE_DIR=dir [-DCHECK=ON] -P Format.cmake
cmake_minimum_required(VERSION 3.25)
file(GLOB_RECURSE files RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*.h ${SOURCE_DIR}/*.cpp)
list(FILTER files EXCLUDE REGEX "^(build|\\.[^/]*)/")
if(NOT files)
    message(FATAL_ERROR "There are no sources in ${SOURCE_DIR}")
endif()
if(CHECK)
    set(how --dry-run -Werror)
else()
    set(how -i)
endif()
execute_process(COMMAND ${CLANG_FORMAT} --style=file ${how} ${files} WORKING_DIRECTORY ${SOURCE_DIR}
                RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "Not formatted by the project's rules; the target \"format\" does so")
endif()
