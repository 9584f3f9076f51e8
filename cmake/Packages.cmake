# The packages: what they hold, and what they are called. The program stands in one folder with its library and its data,
# as it does in the build tree, since it looks for them beside itself.

# Icons of the desktop and of the executable, from the drawing of the program's own logo.
set(iconDrawing "${PROJECT_BINARY_DIR}/product/theme/svg/Dialog-Logo.svg")
set(iconFolder "${PROJECT_BINARY_DIR}/icons")
# halvarion_icons(variable size...): the files, one a size in pixels.
function(halvarion_icons variable)
    set(icons)
    foreach(size IN LISTS ARGN)
        set(icon "${iconFolder}/${size}.png")
        add_custom_command(OUTPUT "${icon}"
            COMMAND "${CMAKE_COMMAND}" -E make_directory "${iconFolder}"
            COMMAND "${RSVG_CONVERT}" --width ${size} --height ${size} --output "${icon}" "${iconDrawing}"
            DEPENDS "${iconDrawing}"
            VERBATIM)
        list(APPEND icons "${icon}")
    endforeach()
    set(${variable} "${icons}" PARENT_SCOPE)
endfunction()

set(CPACK_PACKAGE_NAME halvarion)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "The Halvarion developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configuration tool for wireless gaming mice")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://velko.example/en")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

if(WIN32)
    include(PackagesWindows)
else()
    include(PackagesDebian)
endif()

install(TARGETS halvarion portwirectl RUNTIME DESTINATION "${place}")
install(TARGETS portwire LIBRARY DESTINATION "${place}" RUNTIME DESTINATION "${place}")
install(FILES "${HALVARION_DATA_DIR}/portwire.ini" "${HALVARION_DATA_DIR}/driver_sensor.h" DESTINATION "${place}")
install(DIRECTORY "${HALVARION_DATA_DIR}/Language" "${HALVARION_DATA_DIR}/Picture" "${HALVARION_DATA_DIR}/usersetting"
    DESTINATION "${place}")

include(CPack)
