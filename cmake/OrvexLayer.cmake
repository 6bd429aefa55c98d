# A layer is a static library that publishes its headers by forwarding headers of its own. Other layers see only what
# the layers below them publish, so an include that points upward does not compile.
#
#   orvex_layer(name HEADERS h... SOURCES file... USES target...)
#
# HEADERS are published as "<folder>/<header>"; SOURCES are all source files, headers with Q_OBJECT and forms included.
function(orvex_layer name)
    cmake_parse_arguments(L "" "" "HEADERS;SOURCES;USES" ${ARGN})
    add_library(${name} STATIC ${L_SOURCES} ${L_HEADERS})
    get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    set(published ${PROJECT_BINARY_DIR}/published/${name})
    foreach(header IN LISTS L_HEADERS)
        file(CONFIGURE OUTPUT ${published}/${folder}/${header}
             CONTENT "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${header}\"\n" @ONLY)
    endforeach()
    target_include_directories(${name} PUBLIC ${published} ${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/include)
    target_link_libraries(${name} PUBLIC ${L_USES})
endfunction()
