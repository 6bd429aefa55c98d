# All data are found beside the executable, so the build assembles a complete installation in one directory:
# the executable, Resources/, config.ini, the archiver 7za, Qt's Chinese texts and the directory of the client templates.
#
# `cmake --install` puts the same, with the client templates that stand in the assembled directory. Over an existing
# installation it leaves the settings, the history, the packages and other client templates as they are. The components
# of the rules are told in OrvexPackage.cmake.
#
#   orvex_installation(target DIRECTORY dir [LANGUAGE_FILES file...])
find_program(ORVEX_ARCHIVER 7za PATHS /usr/lib/p7zip /usr/lib/7zip NO_DEFAULT_PATH
             DOC "The self-contained 7za binary that goes into the installation")
if(NOT ORVEX_ARCHIVER)
    find_program(ORVEX_ARCHIVER 7za REQUIRED)
endif()

# Qt's own Chinese texts, for the buttons that are not the program's: looked for in the working directory.
find_file(ORVEX_QT_CHINESE qtbase_zh_CN.qm PATHS /usr/share/qt5/translations NO_DEFAULT_PATH
          DOC "Qt's Chinese translation, which goes into the installation as qt_zh_CN.qm")

function(orvex_installation target)
    cmake_parse_arguments(I "" "DIRECTORY" "LANGUAGE_FILES" ${ARGN})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${I_DIRECTORY})
    set(settings ${I_DIRECTORY}/config.ini)
    set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${target}_installation.stamp)
    if(ORVEX_QT_CHINESE)
        set(copy_qt_chinese COMMAND ${CMAKE_COMMAND} -E copy_if_different ${ORVEX_QT_CHINESE} ${I_DIRECTORY}/qt_zh_CN.qm)
    endif()
    add_custom_command(
        OUTPUT ${stamp}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${I_DIRECTORY}/Resources ${I_DIRECTORY}/template
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${I_LANGUAGE_FILES} ${I_DIRECTORY}/Resources
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${ORVEX_ARCHIVER} ${I_DIRECTORY}/7za
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${PROJECT_SOURCE_DIR}/packaging/config.ini ${settings}
        ${copy_qt_chinese}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS ${I_LANGUAGE_FILES} ${PROJECT_SOURCE_DIR}/packaging/config.ini ${ORVEX_ARCHIVER}
        COMMENT "Assembling the installation of ${target}"
        VERBATIM)
    add_custom_target(${target}_installation ALL DEPENDS ${stamp})
    add_dependencies(${target} ${target}_installation)

    install(TARGETS ${target} DESTINATION . COMPONENT program)
    install(PROGRAMS ${ORVEX_ARCHIVER} DESTINATION . RENAME 7za COMPONENT place)
    install(FILES ${I_LANGUAGE_FILES} DESTINATION Resources COMPONENT program)
    if(ORVEX_QT_CHINESE)
        install(FILES ${ORVEX_QT_CHINESE} DESTINATION . RENAME qt_zh_CN.qm COMPONENT place)
    endif()
    install(DIRECTORY DESTINATION template COMPONENT place)
    install(DIRECTORY ${I_DIRECTORY}/template DESTINATION . COMPONENT templates)
    install(CODE "
        if(NOT EXISTS \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/config.ini\")
            file(INSTALL \"${PROJECT_SOURCE_DIR}/packaging/config.ini\" DESTINATION \"\${CMAKE_INSTALL_PREFIX}\")
        endif()" COMPONENT place)
endfunction()

# Puts a program into the installation of another.
#
#   orvex_beside(target other)
function(orvex_beside target other)
    get_target_property(directory ${other} RUNTIME_OUTPUT_DIRECTORY)
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${directory})
    add_dependencies(${target} ${other}_installation)
    install(TARGETS ${target} DESTINATION . COMPONENT program)
endfunction()
