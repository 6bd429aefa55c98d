# What CPack makes of the programs (scripts/package.sh): a Debian package, which installs to the one place where the
# client's packaging scripts are looked for, and an archive, which runs from any directory.
#
# Components of the install rules: `program` is in both; `place` is what an installation of its own has besides, with the
# archiver, Qt's texts and the settings in it; `templates` are the client templates of the assembled directory, which are
# in neither package; `system` is what the Debian package puts into the system, which `cmake --install` leaves out.
set(ORVEX_CONTACT "Orvex Customisation Manager <orvex-manager@example.com>" CACHE STRING
    "Who is named in the Debian package as the one to turn to")
set(ORVEX_PLACE /opt/apps/com.manager.orvex.amd/files)
set(ORVEX_GROUP orvex-manager)
set(ORVEX_ID com.manager.orvex.amd)
# The scripts of the client's packaging, which lie in the place when the client brings them.
set(ORVEX_SCRIPTS "makeDeb.sh makeUpgradeDeb.sh makeCusPack.sh")
# Where Qt and its plugins look for plugins: in directories of these names, beside the program too.
set(ORVEX_PLUGIN_KINDS "accessible accessiblebridge bearer egldeviceintegrations generic iconengines imageformats \
kf5 networkaccess pictureformats platforminputcontexts platforms platformthemes printsupport sqldrivers styles \
virtualkeyboard wayland-decoration-client wayland-graphics-integration-client wayland-graphics-integration-server \
wayland-inputdevice-integration wayland-shell-integration xcbglintegrations")

# The date of the release stands in the changelog; the version, which stands there too, is that of the project.
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md releases REGEX "^## \\[[0-9.]+\\] - [0-9-]+$")
list(GET releases 0 release)
string(REGEX REPLACE "^.* - " "" ORVEX_RELEASE_DATE "${release}")
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date -u -R -d ${ORVEX_RELEASE_DATE}
                OUTPUT_VARIABLE ORVEX_RELEASE_TIME OUTPUT_STRIP_TRAILING_WHITESPACE)
get_target_property(ORVEX_QT_PLUGINS Qt5::QXcbIntegrationPlugin LOCATION)
get_filename_component(ORVEX_QT_PLUGINS ${ORVEX_QT_PLUGINS} DIRECTORY)
get_filename_component(ORVEX_QT_PLUGINS ${ORVEX_QT_PLUGINS} DIRECTORY)

set(made ${PROJECT_BINARY_DIR}/packaging)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
# orvex_configure_script(file made): fills in a script, which can be executed.
function(orvex_configure_script file result)
    configure_file(${file} ${result} @ONLY FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                            WORLD_READ WORLD_EXECUTE)
endfunction()
set(ORVEX_STARTED_IN [[$(dirname -- "$(readlink -f -- "$0")")]])
set(ORVEX_SHARED)
orvex_configure_script(${packaging}/orvex-manager.in ${made}/orvex-manager)
set(ORVEX_STARTED_IN ${ORVEX_PLACE})
set(ORVEX_SHARED yes)
orvex_configure_script(${packaging}/orvex-manager.in ${made}/debian/orvex-manager)
orvex_configure_script(${packaging}/debian/orvex-inspect.in ${made}/debian/orvex-inspect)
foreach(script IN ITEMS postinst postrm prerm)
    orvex_configure_script(${packaging}/debian/${script}.in ${made}/debian/${script})
endforeach()
configure_file(${packaging}/${ORVEX_ID}.metainfo.xml.in ${made}/${ORVEX_ID}.metainfo.xml @ONLY)
foreach(page IN ITEMS orvex-inspect orvex-manager)
    configure_file(${PROJECT_SOURCE_DIR}/docs/${page}.1.in ${made}/${page}.1 @ONLY)
endforeach()
foreach(file IN ITEMS changelog qt.conf tmpfiles.conf)
    configure_file(${packaging}/debian/${file}.in ${made}/debian/${file} @ONLY)
endforeach()

install(PROGRAMS ${made}/orvex-manager DESTINATION . COMPONENT place)
install(PROGRAMS ${made}/debian/orvex-inspect ${made}/debian/orvex-manager DESTINATION /usr/bin
        COMPONENT system EXCLUDE_FROM_ALL)
install(FILES ${made}/orvex-inspect.1 ${made}/orvex-manager.1 DESTINATION man/man1 COMPONENT place)
install(FILES ${packaging}/orvex-inspect.bash-completion DESTINATION completion RENAME orvex-inspect COMPONENT place)

# The documents, which link each other as they lie in the sources. The manual page has its name there, and is filled in.
function(orvex_install_documents directory)
    foreach(document IN ITEMS README CHANGELOG)
        install(FILES ${PROJECT_SOURCE_DIR}/${document}.md ${PROJECT_SOURCE_DIR}/${document}.zh.md
                DESTINATION ${directory} ${ARGN})
    endforeach()
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${directory} ${ARGN}
            FILES_MATCHING PATTERN *.md PATTERN *.svg PATTERN *.png PATTERN *.json)
    install(FILES ${made}/orvex-inspect.1 DESTINATION ${directory}/docs RENAME orvex-inspect.1.in ${ARGN})
endfunction()
orvex_install_documents(. COMPONENT place)
orvex_install_documents(/usr/share/doc/orvex-manager COMPONENT system EXCLUDE_FROM_ALL)

# Compressed and rendered; made for the packages alone.
find_program(ORVEX_RSVG rsvg-convert DOC "Renders the icons of the desktop from their drawings")
set(package_files)
foreach(text IN ITEMS orvex-inspect.1 orvex-manager.1 debian/changelog)
    add_custom_command(OUTPUT ${made}/${text}.gz COMMAND gzip -9nkf ${made}/${text} DEPENDS ${made}/${text} VERBATIM)
    list(APPEND package_files ${made}/${text}.gz)
endforeach()
set(drawings ${PROJECT_SOURCE_DIR}/Resources/icons)
set(icons /usr/share/icons/hicolor)
foreach(size IN ITEMS 16 24 32 48 64 128 256)
    set(drawing ${drawings}/Orvex-${size}.svg)
    if(NOT EXISTS ${drawing})
        set(drawing ${drawings}/Orvex.svg)
    endif()
    set(picture ${made}/icons/${size}.png)
    add_custom_command(OUTPUT ${picture}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${made}/icons
        COMMAND $<IF:$<BOOL:${ORVEX_RSVG}>,${ORVEX_RSVG},rsvg-convert> --width ${size} --height ${size}
                --output ${picture} ${drawing}
        DEPENDS ${drawing} VERBATIM)
    list(APPEND package_files ${picture})
    install(FILES ${picture} DESTINATION ${icons}/${size}x${size}/apps RENAME ${ORVEX_ID}.png
            COMPONENT system EXCLUDE_FROM_ALL)
endforeach()
add_custom_target(orvex_package_files DEPENDS ${package_files})

# system(DIRECTORY file [NAME]): a file of the Debian package outside of its place.
function(orvex_install_system directory file)
    get_filename_component(name ${file} NAME)
    if(ARGC GREATER 2)
        set(name ${ARGV2})
    endif()
    install(FILES ${file} DESTINATION ${directory} RENAME ${name} COMPONENT system EXCLUDE_FROM_ALL)
endfunction()
# A link of the Debian package; its directory is made.
function(orvex_install_link target link)
    install(CODE "
        get_filename_component(directory \"\$ENV{DESTDIR}${link}\" DIRECTORY)
        file(MAKE_DIRECTORY \${directory})
        file(CREATE_LINK ${target} \"\$ENV{DESTDIR}${link}\" SYMBOLIC)" COMPONENT system EXCLUDE_FROM_ALL)
endfunction()

orvex_install_system(${icons}/scalable/apps ${drawings}/Orvex.svg ${ORVEX_ID}.svg)
orvex_install_system(/usr/share/applications ${packaging}/${ORVEX_ID}.desktop)
orvex_install_system(/usr/share/metainfo ${made}/${ORVEX_ID}.metainfo.xml)
orvex_install_system(/usr/share/man/man1 ${made}/orvex-inspect.1.gz)
orvex_install_system(/usr/share/man/man1 ${made}/orvex-manager.1.gz)
orvex_install_system(/usr/share/bash-completion/completions ${packaging}/orvex-inspect.bash-completion orvex-inspect)
orvex_install_system(/usr/share/orvex-manager ${packaging}/config.ini)
orvex_install_system(/usr/share/lintian/overrides ${packaging}/debian/lintian-overrides orvex-manager)
orvex_install_system(/usr/share/doc/orvex-manager ${packaging}/debian/copyright)
orvex_install_system(/usr/share/doc/orvex-manager ${made}/debian/changelog.gz)
orvex_install_system(/usr/lib/tmpfiles.d ${made}/debian/tmpfiles.conf orvex-manager.conf)
# Members may write into the place: a file of this name there would choose the plugins of everyone, and one in these
# directories would be loaded by everyone.
orvex_install_system(${ORVEX_PLACE} ${made}/debian/qt.conf)
string(REPLACE " " ";" kinds ${ORVEX_PLUGIN_KINDS})
foreach(kind IN LISTS kinds)
    install(DIRECTORY DESTINATION ${ORVEX_PLACE}/${kind} COMPONENT system EXCLUDE_FROM_ALL)
endforeach()
orvex_install_link(/usr/bin/7za ${ORVEX_PLACE}/7za)
orvex_install_link(/usr/share/qt5/translations/qtbase_zh_CN.qm ${ORVEX_PLACE}/qt_zh_CN.qm)

file(CONFIGURE OUTPUT ${made}/CPackComponents.cmake @ONLY CONTENT [[
if(CPACK_GENERATOR STREQUAL "DEB")
    set(CPACK_COMPONENTS_ALL program system)
    set(CPACK_PACKAGING_INSTALL_PREFIX @ORVEX_PLACE@)
else()
    set(CPACK_COMPONENTS_ALL program place)
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
]])
set(CPACK_PROJECT_CONFIG_FILE ${made}/CPackComponents.cmake)
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME orvex-manager)
set(CPACK_PACKAGE_CONTACT ${ORVEX_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "customisation manager of the Orvex network access client")
set(CPACK_PACKAGE_DESCRIPTION
"The administrator chooses the components that the Orvex network access client
carries, sets their options, and has setup and update packages made of them.
Every customisation is kept in a history. Chinese and English.
.
The command orvex-inspect reads history and packages, verifies, compares and
searches them, and changes nothing.")
set(CPACK_PACKAGE_FILE_NAME orvex-manager-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_STRIP_FILES ON)
set(CPACK_MONOLITHIC_INSTALL OFF)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS adduser)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "p7zip-full, qttranslations5-l10n, fonts-noto-cjk, libnotify-bin | zenity | kdialog | x11-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "nautilus, bash-completion")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${made}/debian/postinst ${made}/debian/postrm ${made}/debian/prerm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
