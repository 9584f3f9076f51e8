# The package for Debian. In /usr/bin are links: the program looks for its data beside its true place.

include(GNUInstallDirs)
set(place lib/halvarion)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set_target_properties(halvarion PROPERTIES INSTALL_RPATH "$ORIGIN")

install(CODE "
    file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")
    foreach(program IN ITEMS halvarion portwirectl)
        file(CREATE_LINK ../${place}/\${program} \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin/\${program}\" SYMBOLIC)
    endforeach()")

# The sizes that desktops ask for; the drawing itself is for all others.
set(sizes 16 22 24 32 48 64 128 256 512)
halvarion_icons(icons ${sizes})
add_custom_target(icons ALL DEPENDS ${icons})
foreach(size IN LISTS sizes)
    install(FILES "${iconFolder}/${size}.png" DESTINATION share/icons/hicolor/${size}x${size}/apps RENAME halvarion.png)
endforeach()
install(FILES "${iconDrawing}" DESTINATION share/icons/hicolor/scalable/apps RENAME halvarion.svg)

# The pictures go with the documentation. The metadata names them only by an address from which a software centre can
# fetch them, the one kind that AppStream allows: one that answers nobody would show as a broken picture.
set(HALVARION_SCREENSHOTS_ADDRESS "" CACHE STRING "Where the pictures of docs/ are published, https://... with no / behind")
set(entries)
set(kind " type=\"default\"")
foreach(page IN ITEMS button sensor settings)
    set(picture "${page}-page.png")
    install(FILES "${PROJECT_SOURCE_DIR}/docs/${picture}" DESTINATION share/doc/halvarion)
    string(APPEND entries "
    <screenshot${kind}>
      <caption>The ${page} page</caption>
      <image>${HALVARION_SCREENSHOTS_ADDRESS}/${picture}</image>
    </screenshot>")
    set(kind)
endforeach()
set(HALVARION_SCREENSHOTS)
if(HALVARION_SCREENSHOTS_ADDRESS)
    set(HALVARION_SCREENSHOTS "\n  <screenshots>${entries}\n  </screenshots>")
endif()

# What is read without a program: compressed as Debian wants it, without the time of its making.
set(metadata "${PROJECT_BINARY_DIR}/linux")
execute_process(COMMAND date -R -u -d "${HALVARION_RELEASE_DATE}" OUTPUT_VARIABLE HALVARION_RELEASE_TIME
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
foreach(file IN ITEMS example.velko.halvarion.metainfo.xml changelog halvarion.1 portwirectl.1)
    configure_file("${PROJECT_SOURCE_DIR}/product/linux/${file}.in" "${metadata}/${file}" @ONLY)
endforeach()
set(compressed)
foreach(file IN ITEMS changelog halvarion.1 portwirectl.1)
    add_custom_command(OUTPUT "${metadata}/${file}.gz"
        COMMAND gzip -9nkf "${metadata}/${file}"
        DEPENDS "${metadata}/${file}" VERBATIM)
    list(APPEND compressed "${metadata}/${file}.gz")
endforeach()
add_custom_target(package_texts ALL DEPENDS ${compressed})
install(FILES "${metadata}/halvarion.1.gz" "${metadata}/portwirectl.1.gz" DESTINATION share/man/man1)
install(FILES "${metadata}/changelog.gz" DESTINATION share/doc/halvarion)
install(FILES "${metadata}/example.velko.halvarion.metainfo.xml" DESTINATION share/metainfo)
install(FILES "${PROJECT_SOURCE_DIR}/product/linux/halvarion.desktop" DESTINATION share/applications)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION share/doc/halvarion RENAME copyright)

set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Halvarion developers <halvarion@velko.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${HALVARION_DATA_DIR}")
# Without these fonts the program runs and shows boxes for three of its six languages; without the plug-in a Wayland
# desktop takes it for a program of X11.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk, fonts-noto-core, qtwayland5")
set(CPACK_PACKAGE_DESCRIPTION "\
Halvarion shows and changes what a wireless gaming mouse keeps in its own
memory: the functions of its buttons, macros, DPI levels and their colours,
report rate, lift-off distance, the switches of its sensor and its light.
What is set is in the mouse and works the same on the next PC, without this
program.")
