# What an installation holds. On Linux: the usual folders below the prefix, and a Debian package by CPack; for Windows
# see WindowsPackage.
# Without a settings file beside the program, its first start offers copies of the samples to the user.
set(CPACK_PACKAGE_NAME kdlimitdesk)
set(CPACK_PACKAGE_VENDOR "Kestrix Quality Systems")
set(CPACK_PACKAGE_CONTACT "Kestrix Quality Systems <support@example.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "limits of many data-entry applications in one grid")
set(CPACK_PACKAGE_DESCRIPTION
    "KD LimitDesk puts the variables of many data-entry applications into one grid,
one row for each variable, with their specification, control and warning
limits and other properties. Columns are filtered, cells edited and checked,
blocks cut, copied, pasted, filled and replaced. A commit archives the changed
applications, writes the changed views and records each change.")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")

if(UNIX)
    include(GNUInstallDirs)
    set(data "${CMAKE_INSTALL_DATADIR}/kdlimitdesk")
    set(docs "${CMAKE_INSTALL_DATADIR}/doc/kdlimitdesk")
    set(id com.example.kdlimitdesk)
    set(linux "${PROJECT_SOURCE_DIR}/packaging/linux")
    set(made "${PROJECT_BINARY_DIR}/packaging")

    install(TARGETS KDLimitDesk RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
    install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
        file(CREATE_LINK KDLimitDesk \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/kdlimitdesk\" SYMBOLIC)")
    install(DIRECTORY help DESTINATION "${data}")
    install(FILES samples/Rules.ini DESTINATION "${data}")
    install(DIRECTORY samples/ DESTINATION "${data}/samples"
            FILES_MATCHING PATTERN "*.kdt" PATTERN "*.kdt6" PATTERN "*.V[0-9]*" PATTERN tables EXCLUDE)

    install(FILES "${linux}/${id}.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
    configure_file("${linux}/${id}.metainfo.xml.in" "${made}/${id}.metainfo.xml" @ONLY)
    install(FILES "${made}/${id}.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
    foreach(size 16 20 24 32 40 48 64 128 256)
        install(FILES "src/qt/icons/KDLimitDesk-${size}.png" RENAME kdlimitdesk.png
                DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps")
    endforeach()
    install(FILES src/qt/icons/KDLimitDesk.svg RENAME kdlimitdesk.svg
            DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")

    # Manual page and changelog lie compressed, without name and time, so that a package is made the same twice; the time
    # of its files is scripts/package.sh's to give.
    find_program(KD_GZIP gzip)
    if(KD_GZIP)
        configure_file("${linux}/KDLimitDesk.1.in" "${made}/KDLimitDesk.1" @ONLY)
        execute_process(COMMAND "${KD_GZIP}" -9nc "${made}/KDLimitDesk.1" OUTPUT_FILE "${made}/KDLimitDesk.1.gz"
                        COMMAND_ERROR_IS_FATAL ANY)
        execute_process(COMMAND "${KD_GZIP}" -9nc "${linux}/changelog" OUTPUT_FILE "${made}/changelog.gz"
                        COMMAND_ERROR_IS_FATAL ANY)
        install(FILES "${made}/KDLimitDesk.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
        install(FILES "${made}/KDLimitDesk.1.gz" RENAME kdlimitdesk.1.gz DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
        install(FILES "${made}/changelog.gz" DESTINATION "${docs}")
    endif()
    install(FILES "${linux}/copyright" DESTINATION "${docs}")

    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_STRIP_FILES ON)
    set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION science)
    set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
    set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.example.com")
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    # The X11 platform plugin and the SVG-free icons come with the widgets; a browser shows the guide.
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, fonts-dejavu-core | fonts-liberation")
    set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
    set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    include(CPack)
elseif(WIN32)
    include(WindowsPackage)
endif()
