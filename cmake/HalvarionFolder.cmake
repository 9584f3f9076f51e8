# Folders of the source tree as targets that see only what they may include.
#
# Includes are written from the root ("sensor/Sensor.h"). A root on every include path would let any folder include any
# other, so each target offers its own headers alone, through a folder of links in the build tree: what a target doesn't
# link to, it can't include.

function(_halvarion_offer target folder visibility)
    set(offered "${CMAKE_BINARY_DIR}/include/${target}")
    foreach(header IN LISTS ARGN)
        get_filename_component(name "${header}" NAME)
        file(MAKE_DIRECTORY "${offered}/${folder}")
        file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${folder}/${header}" "${offered}/${folder}/${name}" COPY_ON_ERROR SYMBOLIC)
    endforeach()
    target_include_directories(${target} ${visibility} "${offered}")
endfunction()

# halvarion_headers(target folder header...): headers without a source.
function(halvarion_headers target folder)
    add_library(${target} INTERFACE)
    _halvarion_offer(${target} ${folder} INTERFACE ${ARGN})
endfunction()

# halvarion_folder(target SOURCES file... HEADERS file... LINKS target...): a static library of this folder. Headers are
# what others may include.
function(halvarion_folder target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "FOLDER" "SOURCES;HEADERS;LINKS")
    if(NOT arg_FOLDER)
        file(RELATIVE_PATH arg_FOLDER "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    endif()
    list(TRANSFORM arg_SOURCES PREPEND "${PROJECT_SOURCE_DIR}/${arg_FOLDER}/" OUTPUT_VARIABLE sources)
    list(TRANSFORM arg_HEADERS PREPEND "${PROJECT_SOURCE_DIR}/${arg_FOLDER}/" OUTPUT_VARIABLE headers)
    add_library(${target} STATIC ${sources} ${headers})
    _halvarion_offer(${target} ${arg_FOLDER} PUBLIC ${arg_HEADERS})
    target_link_libraries(${target} PUBLIC ${arg_LINKS})
endfunction()
