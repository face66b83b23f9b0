# What an installation on Windows holds and, where it is built on Linux, the installer and the archive of it. All lies in
# one folder: the program, its libraries, the help, the rule catalogue and the samples, which a first start copies for
# the user.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)  # what it tells is known only below the folder that asks
install(TARGETS KDLimitDesk RUNTIME DESTINATION .)
install(DIRECTORY help DESTINATION .)
install(FILES samples/Rules.ini DESTINATION .)
install(DIRECTORY samples/ DESTINATION samples
        FILES_MATCHING PATTERN "*.kdt" PATTERN "*.kdt6" PATTERN "*.V[0-9]*" PATTERN tables EXCLUDE)
install(FILES LICENSE DESTINATION . RENAME LICENSE.txt)

if(CMAKE_CROSSCOMPILING)
    # The tool that collects a program's libraries runs on Windows only; the list is short.
    install(FILES $<TARGET_FILE:Qt6::Core> $<TARGET_FILE:Qt6::Gui> $<TARGET_FILE:Qt6::Widgets> DESTINATION .)
    install(FILES $<TARGET_FILE:Qt6::QWindowsIntegrationPlugin> DESTINATION platforms)
    install(FILES $<TARGET_FILE:Qt6::QWindowsVistaStylePlugin> DESTINATION styles)
    foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${name}" OUTPUT_VARIABLE library
                        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        # The compiler's own copies carry their debug information.
        set(stripped "${PROJECT_BINARY_DIR}/runtime/${name}")
        file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/runtime")
        execute_process(COMMAND "${CMAKE_STRIP}" --strip-unneeded -o "${stripped}" "${library}"
                        COMMAND_ERROR_IS_FATAL ANY)
        install(FILES "${stripped}" DESTINATION .)
    endforeach()
    # Which sources the libraries were built from.
    function(debian_version result field package)
        execute_process(COMMAND dpkg-query -W -f "\${${field}}" "${package}" OUTPUT_VARIABLE version
                        COMMAND_ERROR_IS_FATAL ANY)
        set(${result} "${version}" PARENT_SCOPE)
    endfunction()
    set(KD_QT_VERSION "${Qt6_VERSION}")
    debian_version(KD_QT_SOURCE_VERSION source:Version qt6-base-dev-tools)
    debian_version(KD_GCC_SOURCE_VERSION source:Version g++-mingw-w64-x86-64-posix)
    debian_version(KD_GCC_VERSION Version gcc-mingw-w64-base)
    debian_version(KD_MINGW_SOURCE_VERSION source:Version mingw-w64-x86-64-dev)
    configure_file(packaging/windows/NOTICES.txt.in "${PROJECT_BINARY_DIR}/NOTICES.txt" @ONLY NEWLINE_STYLE CRLF)
    install(FILES "${PROJECT_BINARY_DIR}/NOTICES.txt" DESTINATION .)
    install(FILES "${KD_QT_MINGW}/licenses/LGPL-3.0-only.txt" "${KD_QT_MINGW}/licenses/GPL-3.0-only.txt"
                  "${KD_QT_MINGW}/licenses/Qt-copyright.txt" DESTINATION licenses)
    install(FILES /usr/share/doc/gcc-mingw-w64-base/copyright DESTINATION licenses RENAME gcc-copyright.txt)
    install(FILES /usr/share/doc/mingw-w64-x86-64-dev/copyright DESTINATION licenses
            RENAME mingw-w64-copyright.txt)
else()
    # An installation for the one who builds: a package would need the licences and sources of a Qt that is not ours.
    set(CMAKE_INSTALL_SYSTEM_RUNTIME_DESTINATION .)
    include(InstallRequiredSystemLibraries)
    set(result OUTPUT_SCRIPT)
    if(Qt6_VERSION VERSION_LESS 6.5)
        set(result FILENAME_VARIABLE)
    endif()
    qt_generate_deploy_app_script(TARGET KDLimitDesk ${result} deploy NO_UNSUPPORTED_PLATFORM_ERROR)
    install(CODE "set(QT_DEPLOY_BIN_DIR .)\nset(QT_DEPLOY_LIB_DIR .)")
    install(SCRIPT "${deploy}")
    return()
endif()

set(CPACK_GENERATOR NSIS ZIP)
set(CPACK_MODULE_PATH "${PROJECT_SOURCE_DIR}/packaging/windows")  # the installer's script
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
set(CPACK_PACKAGE_FILE_NAME "KDLimitDesk-${PROJECT_VERSION}-windows-x64")
set(CPACK_PACKAGE_INSTALL_DIRECTORY "KD LimitDesk")
set(CPACK_PACKAGE_INSTALL_REGISTRY_KEY KDLimitDesk)
set(CPACK_NSIS_DISPLAY_NAME "KD LimitDesk")
set(CPACK_NSIS_MUI_ICON "${PROJECT_SOURCE_DIR}/src/qt/icons/KDLimitDesk.ico")
set(CPACK_NSIS_MUI_UNIICON "${PROJECT_SOURCE_DIR}/src/qt/icons/KDLimitDesk.ico")
set(CPACK_NSIS_URL_INFO_ABOUT "https://www.example.com")
set(CPACK_NSIS_CONTACT "support@example.com")
include(CPack)
