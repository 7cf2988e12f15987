# SPDX-License-Identifier: AGPL-3.0-or-later
# Stops the configuration when a source includes what stands above it, or when units, each of which is
# a header with its source, use each other in a ring.

include_guard(GLOBAL)

# The folders of the program from the bottom to the top: what is in one of them includes what is in
# the same one or in one that is listed before it.
set(QUILLORA_ROOMS
    res
    pdfcore
    pdfcore/src/base
    pdfcore/src/qpdf
    pdfcore/src/mupdf
    pdfcore/src/render
    pdfcore/src/session
    pdfcore/src/save/source
    pdfcore/src/save/interactive
    pdfcore/src/save/content
    pdfcore/src/save
    pdfcore/src/compress
    pdfcore/src/operations
    pdfcore/src
    taskcenter
    widgets
    pdf/core
    tools/common
    tools/files
    tools/tasks
    tools/options
    tools
    recent
    pdf/viewer/common
    pdf/viewer/reading
    pdf/viewer/cards
    pdf/viewer/grid
    pdf/viewer/thumbnails
    pdf/viewer/bars
    pdf/viewer/side_panel
    pdf/viewer/commands
    pdf/viewer
    app)

# quillora_read_includes(<result> <file>)
#
# The files of the project that a file of the project includes. They are named from the top of the
# project, with quotation marks; anything else that is no header of a library stops the configuration.
function(quillora_read_includes result file)
    file(STRINGS "${PROJECT_SOURCE_DIR}/${file}" lines REGEX "^[ \t]*#[ \t]*include[ \t]*[\"<]")
    set(included)
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^[^\"<]*([\"<][^\">]+).*" "\\1" name "${line}")
        if(name MATCHES "^<(app|pdf|pdfcore|recent|res|taskcenter|tools|widgets|tests)/")
            message(FATAL_ERROR "${file}: ${name}> is to be included with quotation marks")
        endif()
        if(name MATCHES "^\"")
            string(SUBSTRING "${name}" 1 -1 name)
            if(NOT name MATCHES "^[a-z_]+/" AND NOT name MATCHES "\\.moc$")
                message(FATAL_ERROR "${file}: ${name} is to be named from the top of the project")
            endif()
            list(APPEND included "${name}")
        endif()
    endforeach()
    set(${result} "${included}" PARENT_SCOPE)
endfunction()

# quillora_check_includes()
function(quillora_check_includes)
    set(files)
    foreach(folder app pdf pdfcore recent res taskcenter tools widgets)
        file(GLOB_RECURSE found RELATIVE "${PROJECT_SOURCE_DIR}"
            "${PROJECT_SOURCE_DIR}/${folder}/*.h" "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
        list(APPEND files ${found})
    endforeach()

    set(units)
    foreach(file IN LISTS files)
        quillora_read_includes(included "${file}")
        get_filename_component(room "${file}" DIRECTORY)
        list(FIND QUILLORA_ROOMS "${room}" level)
        if(level EQUAL -1 AND NOT room MATCHES "^res/")
            message(FATAL_ERROR "${room} has no place in the order of cmake/QuilloraIncludes.cmake")
        endif()
        foreach(name IN LISTS included)
            get_filename_component(its_room "${name}" DIRECTORY)
            list(FIND QUILLORA_ROOMS "${its_room}" its_level)
            if(its_level EQUAL -1 AND NOT its_room MATCHES "^res/" AND NOT name MATCHES "\\.moc$")
                message(FATAL_ERROR "${file} must not include ${name}, which is not of the program")
            endif()
            if(its_level GREATER level)
                message(FATAL_ERROR "${file} must not include ${name}, which stands above it")
            endif()
            if(name MATCHES "^pdfcore/src/" AND NOT file MATCHES "^pdfcore/")
                message(FATAL_ERROR "${file} must not include ${name}, which is the engine's own")
            endif()
        endforeach()
        string(REGEX REPLACE "\\.(h|cpp)$" "" unit "${file}")
        string(REGEX REPLACE "\\.h" "" used "${included}")
        list(REMOVE_ITEM used "${unit}")
        list(APPEND units "${unit}")
        list(APPEND used_by_${unit} ${used})
    endforeach()
    list(REMOVE_DUPLICATES units)

    # A unit that uses none of those left can be in no ring; neither can, then, those that use only
    # such units.
    set(found_one TRUE)
    while(found_one AND units)
        set(found_one FALSE)
        set(left)
        foreach(unit IN LISTS units)
            set(waits FALSE)
            foreach(used IN LISTS used_by_${unit})
                if(used IN_LIST units)
                    set(waits TRUE)
                    break()
                endif()
            endforeach()
            if(waits)
                list(APPEND left "${unit}")
            else()
                set(found_one TRUE)
            endif()
        endforeach()
        set(units "${left}")
    endwhile()
    # What uses a ring without being in it is left too; nothing that is left uses it.
    set(found_one TRUE)
    while(found_one AND units)
        set(found_one FALSE)
        set(used)
        foreach(unit IN LISTS units)
            list(APPEND used ${used_by_${unit}})
        endforeach()
        foreach(unit IN LISTS units)
            if(NOT unit IN_LIST used)
                list(REMOVE_ITEM units "${unit}")
                set(found_one TRUE)
            endif()
        endforeach()
    endwhile()
    if(units)
        list(JOIN units ", " ring)
        message(FATAL_ERROR "These use each other in a ring: ${ring}")
    endif()
endfunction()
