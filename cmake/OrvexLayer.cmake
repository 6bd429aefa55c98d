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

    set_target_properties(${name} PROPERTIES
        ORVEX_KIND layer ORVEX_ROOM ${room} ORVEX_USES "${L_USES}"
        ORVEX_HEADERS "${L_HEADERS}" ORVEX_PRIVATE "${L_PRIVATE}" ORVEX_SOURCES "${L_SOURCES}")
    set_property(GLOBAL APPEND PROPERTY ORVEX_LAYERS ${name})
endfunction()

# A program stands above the layers that it uses; its sources may stand in the room of a layer. Every program is part of
# the target orvex_programs. INTO are objects without a room, such as compiled pictures.
#
#   orvex_program(name SOURCES file... USES target... [INTO target...])
function(orvex_program name)
    cmake_parse_arguments(P "" "" "SOURCES;USES;INTO" ${ARGN})
    add_executable(${name} ${P_SOURCES})
    file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE ${P_USES} ${P_INTO})
    add_dependencies(${name} orvex_includes)
    if(NOT TARGET orvex_programs)
        add_custom_target(orvex_programs)
    endif()
    add_dependencies(orvex_programs ${name})
    set_target_properties(${name} PROPERTIES
        ORVEX_KIND program ORVEX_ROOM ${room} ORVEX_USES "${P_USES}"
        ORVEX_HEADERS "" ORVEX_PRIVATE "" ORVEX_SOURCES "${P_SOURCES}")
    set_property(GLOBAL APPEND PROPERTY ORVEX_LAYERS ${name})
endfunction()

# Makes forwarding headers below the build directory, and takes away those of earlier lists; a header is rewritten only
# when it changes.
function(orvex_forward directory room)
    set(directory ${PROJECT_BINARY_DIR}/${directory})
    set(forwarding)
    foreach(header IN LISTS ARGN)
        file(CONFIGURE OUTPUT ${directory}/${room}/${header}
             CONTENT "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${header}\"\n" @ONLY)
        list(APPEND forwarding ${directory}/${room}/${header})
    endforeach()
    file(GLOB_RECURSE stale ${directory}/*)
    list(REMOVE_ITEM stale ${forwarding})
    if(stale)
        file(REMOVE ${stale})
    endif()
endfunction()

# To be called when all layers and programs are there: the check that each of them waits for.
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
    list(REMOVE_DUPLICATES rooms)
    set(stamp ${PROJECT_BINARY_DIR}/includes.stamp)
    add_custom_command(OUTPUT ${stamp}
        COMMAND ${CMAKE_COMMAND} "-DROOMS=${rooms}" -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
                -P ${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS ${files} ${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake
        COMMENT "Checking that every include names its room" VERBATIM)
    add_custom_target(orvex_includes DEPENDS ${stamp})
endfunction()

# Writes what the layers and programs are, for whoever checks or draws them, below the build directory:
#
#   layers.txt  lines "kind|room|uses|header|private|source|includes VALUE", each target begun by its line "target NAME";
#               "includes" are the directories that the compiler searches for the target's sources
#   layers.dot  the layers, each with an edge to every layer that it uses directly
function(orvex_describe_layers)
    get_property(layers GLOBAL PROPERTY ORVEX_LAYERS)
    set(text)
    set(nodes)
    set(edges)
    foreach(layer IN LISTS layers)
        string(APPEND text "target ${layer}\n")
        foreach(key IN ITEMS kind room uses headers private sources)
            string(TOUPPER ORVEX_${key} property)
            get_target_property(values ${layer} ${property})
            string(REGEX REPLACE "(header|source)s$" "\\1" key ${key})
            foreach(value IN LISTS values)
                string(APPEND text "${key} ${value}\n")
            endforeach()
        endforeach()
        string(APPEND text "includes $<JOIN:$<TARGET_PROPERTY:${layer},INCLUDE_DIRECTORIES>,\nincludes >\n")

        get_target_property(kind ${layer} ORVEX_KIND)
        get_target_property(room ${layer} ORVEX_ROOM)
        get_target_property(uses ${layer} ORVEX_USES)
        set(style)
        if(kind STREQUAL program)
            set(style ", style=bold")
        endif()
        string(APPEND nodes "    \"${layer}\" [label=\"${layer}\\n${room}/\"${style}]\n")
        foreach(used IN LISTS uses)
            if(used IN_LIST layers)
                string(APPEND edges "    \"${layer}\" -> \"${used}\"\n")
            endif()
        endforeach()
    endforeach()
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/layers.txt CONTENT "${text}")
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/layers.dot CONTENT "digraph layers {
    node [shape=box, fontname=\"DejaVu Sans\", fontsize=11]
${nodes}${edges}}
")
endfunction()
