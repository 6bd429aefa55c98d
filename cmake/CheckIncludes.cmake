# Fails on an include that does not name its room in full: "Log.h", "../common/Log.h" or, within app/, "widgets/Tables.h"
# would find a file without any layer publishing it, and so would an absolute path or a name that a macro hides. Headers
# made from forms (ui_*.h) have no room.
#
#   cmake -DROOMS="common;xml;..." -DSOURCE_DIR=dir -P CheckIncludes.cmake
cmake_minimum_required(VERSION 3.25)
set(faults)
foreach(room IN LISTS ROOMS)
    file(GLOB files RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/${room}/*.cpp ${SOURCE_DIR}/${room}/*.h)
    foreach(file IN LISTS files)
        file(STRINGS ${SOURCE_DIR}/${file} lines REGEX "^[ \t]*#[ \t]*include")
        foreach(line IN LISTS lines)
            if(line MATCHES "\\.\\./|<[./]" OR NOT line MATCHES "[\"<]")
                list(APPEND faults "${file}: ${line}")
            elseif(line MATCHES "\"(.*)/[^/]*\"")
                if(NOT CMAKE_MATCH_1 IN_LIST ROOMS)
                    list(APPEND faults "${file}: ${line}")
                endif()
            elseif(line MATCHES "\"" AND NOT line MATCHES "\"ui_[A-Za-z0-9]+\\.h\"")
                list(APPEND faults "${file}: ${line}")
            endif()
        endforeach()
    endforeach()
endforeach()
if(faults)
    list(JOIN faults "\n  " text)
    message(FATAL_ERROR "These includes do not name a room in full:\n  ${text}")
endif()
