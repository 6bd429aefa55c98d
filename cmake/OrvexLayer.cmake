# A layer is a static library in a room (a folder) of its own. It publishes headers by forwarding headers, so that other
# layers see only what the layers below them publish: an include that points upward or sideways does not compile.
#
#   orvex_layer(name HEADERS h... [PRIVATE h...] SOURCES file... USES target...)
#
# HEADERS are published as "<room>/<header>"; PRIVATE headers are found by the layer's own sources only, under the same
# name; SOURCES are all source files, forms included.
#
# A quoted include would also find what lies beside or below the including file, whatever is published. So every quoted
# include has to name its room in full, which no such way satisfies; the build fails on one that does not.
function(orvex_layer name)
    cmake_parse_arguments(L "" "" "HEADERS;PRIVATE;SOURCES;USES" ${ARGN})
    add_library(${name} STATIC ${L_SOURCES} ${L_HEADERS} ${L_PRIVATE})
    file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    orvex_forward(published/${name} ${room} ${L_HEADERS})
    orvex_forward(private/${name} ${room} ${L_PRIVATE})
    target_include_directories(${name}
        PUBLIC ${PROJECT_BINARY_DIR}/published/${name} ${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/include
        PRIVATE ${PROJECT_BINARY_DIR}/private/${name})
    target_link_libraries(${name} PUBLIC ${L_USES})
    add_dependencies(${name} orvex_includes)

    list(TRANSFORM L_HEADERS PREPEND ${room}/ OUTPUT_VARIABLE published)
    set_target_properties(${name} PROPERTIES ORVEX_PUBLISHED "${published}" ORVEX_ROOM ${room})
    set_property(GLOBAL APPEND PROPERTY ORVEX_LAYERS ${name})
endfunction()

# Makes forwarding headers below the build directory; a header is rewritten only when it changes.
function(orvex_forward directory room)
    foreach(header IN LISTS ARGN)
        file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/${directory}/${room}/${header}
             CONTENT "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${header}\"\n" @ONLY)
    endforeach()
endfunction()

# To be called when all layers are there: the check that every layer waits for.
function(orvex_check_includes)
    get_property(layers GLOBAL PROPERTY ORVEX_LAYERS)
    set(rooms)
    set(files)
    foreach(layer IN LISTS layers)
        get_target_property(room ${layer} ORVEX_ROOM)
        get_target_property(sources ${layer} SOURCES)
        list(FILTER sources INCLUDE REGEX "\\.(cpp|h)$")
        list(TRANSFORM sources PREPEND ${PROJECT_SOURCE_DIR}/${room}/)
        list(APPEND rooms ${room})
        list(APPEND files ${sources})
    endforeach()
    set(stamp ${PROJECT_BINARY_DIR}/includes.stamp)
    add_custom_command(OUTPUT ${stamp}
        COMMAND ${CMAKE_COMMAND} "-DROOMS=${rooms}" -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
                -P ${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS ${files} ${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake
        COMMENT "Checking that every include names its room" VERBATIM)
    add_custom_target(orvex_includes DEPENDS ${stamp})
endfunction()
