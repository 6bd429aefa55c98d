# The target `tidy`: clang-tidy over every source of the layers and programs, each when its object file is new or
# .clang-tidy has changed. A finding fails it.
find_program(CLANG_TIDY clang-tidy)

function(orvex_tidy)
    if(NOT CLANG_TIDY)
        return()
    endif()
    get_property(layers GLOBAL PROPERTY ORVEX_LAYERS)
    set(stamps)
    foreach(layer IN LISTS layers)
        get_target_property(room ${layer} ORVEX_ROOM)
        get_target_property(sources ${layer} ORVEX_SOURCES)
        list(FILTER sources INCLUDE REGEX "\\.cpp$")
        foreach(source IN LISTS sources)
            set(stamp ${PROJECT_BINARY_DIR}/tidy/${room}/${source}.stamp)
            string(REPLACE . \\. object ${source})
            add_custom_command(OUTPUT ${stamp}
                COMMAND ${CMAKE_COMMAND} -DCLANG_TIDY=${CLANG_TIDY} -DSOURCE=${PROJECT_SOURCE_DIR}/${room}/${source}
                        -DCOMMANDS=${PROJECT_BINARY_DIR} -DSTAMP=${stamp} -P ${PROJECT_SOURCE_DIR}/cmake/Tidy.cmake
                DEPENDS $<FILTER:$<TARGET_OBJECTS:${layer}>,INCLUDE,/${object}\\.o$>
                        ${PROJECT_SOURCE_DIR}/.clang-tidy ${PROJECT_SOURCE_DIR}/cmake/Tidy.cmake
                COMMENT "Reading ${room}/${source} for findings" VERBATIM)
            list(APPEND stamps ${stamp})
        endforeach()
    endforeach()
    add_custom_target(tidy DEPENDS ${stamps})
endfunction()
