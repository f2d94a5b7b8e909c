# What the plug-in's package needs on a machine without Qt, beside the program itself: Qt's libraries and
# the libraries that Debian has for Qt alone, Qt's plug-ins for X11 and Wayland, qt.conf that names the
# folders, and the licences of what is carried. All of it is found relative to the program, so that the
# folder can lie anywhere:
#   norvaxel-orte-und-routen  qt.conf  lib/  plugins/  licences/

# An old-fashioned RPATH, since only that is also searched for what a library needs in turn.
set_target_properties(${program} PROPERTIES INSTALL_RPATH "\$ORIGIN/lib")
target_link_options(${program} PRIVATE -Wl,--disable-new-dtags)

set(qt_plugins
    platforms/libqxcb.so platforms/libqwayland-generic.so
    wayland-shell-integration/libxdg-shell.so wayland-decoration-client/libbradient.so
    wayland-graphics-integration-client/libqt-plugin-wayland-egl.so # unasked for, but its absence is complained of
    platforminputcontexts/libcomposeplatforminputcontextplugin.so
    platforminputcontexts/libibusplatforminputcontextplugin.so)
# What every machine with a desktop has, and what must be its own: the C and C++ runtimes, the display's
# drivers and protocols, fonts, the message bus.
set(of_the_system
    "^(ld-linux.*|lib(c|m|dl|rt|pthread|resolv|gcc_s|stdc[+][+]|GL|EGL|GLX|GLdispatch|X11|X11-xcb|xcb|Xau|Xdmcp"
    "|ICE|SM|wayland-client|fontconfig|freetype|expat|z|dbus-1|glib-2[.]0))[.]so")
string(JOIN "" of_the_system ${of_the_system})
get_target_property(qmake Qt6::qmake IMPORTED_LOCATION)
execute_process(COMMAND ${qmake} -query QT_INSTALL_PLUGINS OUTPUT_VARIABLE qt_plugin_folder
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/qt.conf "[Paths]\nPrefix=.\nLibraries=lib\nPlugins=plugins\n")
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qt.conf DESTINATION . COMPONENT plugin)
foreach(each IN LISTS qt_plugins)
    cmake_path(GET each PARENT_PATH folder)
    install(FILES ${qt_plugin_folder}/${each} DESTINATION plugins/${folder} COMPONENT plugin)
endforeach()
list(JOIN qt_plugins " " qt_plugins)
configure_file(carry_libraries.cmake.in carry_libraries.cmake @ONLY)
install(SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/carry_libraries.cmake COMPONENT plugin)

set(CPACK_GENERATOR TXZ)
# The component's name is put behind it.
set(CPACK_PACKAGE_FILE_NAME ${program}-${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL plugin)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
include(CPack)
