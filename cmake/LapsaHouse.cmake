# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT

# lapsa_write_house(FILE)
#
# Writes every library and program of the project to FILE when the build system is generated, for tests/house and
# tools/house. One line each, with tab-separated fields: name, type (ROOM if lapsa_add_room() made it), folder, output
# file, sources, the libraries it links, and those that it passes on to targets that link it.
function(lapsa_write_house FILE)
    lapsa_targets_below("${PROJECT_SOURCE_DIR}" targets)
    set(lines "")
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        if(NOT type MATCHES "^(STATIC_LIBRARY|OBJECT_LIBRARY|EXECUTABLE)$")
            continue()
        endif()
        get_target_property(room ${target} LAPSA_ROOM)
        if(room)
            set(type "ROOM")
        endif()
        foreach(property IN ITEMS SOURCE_DIR SOURCES LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
            get_target_property(${property} ${target} ${property})
            if(NOT ${property})
                set(${property} "")
            endif()
        endforeach()
        # A static library also passes on its private libraries, but only to the linker.
        list(FILTER INTERFACE_LINK_LIBRARIES EXCLUDE REGEX "LINK_ONLY")
        set(output "")
        if(NOT type STREQUAL "OBJECT_LIBRARY")
            set(output "$<TARGET_FILE:${target}>")
        endif()
        list(JOIN SOURCES " " sources)
        list(JOIN LINK_LIBRARIES " " links)
        list(JOIN INTERFACE_LINK_LIBRARIES " " passes_on)
        string(APPEND lines
            "${target}\t${type}\t${SOURCE_DIR}\t${output}\t${sources}\t${links}\t${passes_on}\n")
    endforeach()
    file(GENERATE OUTPUT "${FILE}" CONTENT "${lines}")
endfunction()

# Every target of FOLDER and the folders below it.
function(lapsa_targets_below FOLDER RESULT)
    get_property(targets DIRECTORY "${FOLDER}" PROPERTY BUILDSYSTEM_TARGETS)
    get_property(folders DIRECTORY "${FOLDER}" PROPERTY SUBDIRECTORIES)
    foreach(folder IN LISTS folders)
        lapsa_targets_below("${folder}" below)
        list(APPEND targets ${below})
    endforeach()
    set(${RESULT} ${targets} PARENT_SCOPE)
endfunction()
