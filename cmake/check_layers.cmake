# Checks that the library's folders depend one way. Run as a script:
#   cmake -DSOURCE_DIR=<folder holding the library's folders> -P check_layers.cmake
# Each folder has a rank; a file may include headers of its own folder and of folders of a lower
# rank only. Folders of equal rank are siblings and include nothing of each other. Headers are
# recognised in both spellings the library uses: <PanelKestrin/name.h> (a published header,
# found by its name in whichever folder holds it) and "folder/name_p.h" (a private header).
# Every offending include is listed; any one of them fails the check.
set(layer_ranks
    platform 0      # stand-ins for the host environment
    shared 1        # classic helpers, arrays, records, keystroke filters
    data 2          # connections, recordsets, settings
    grid 3          # the grid view and the editable grid
    date 3          # the date box
    printing 4      # report parameters, the print form, report engine, print options
    toolbars 5      # the three command toolbars, which open the print form
    typelib 6       # identities and dispatch over every control
    designer 7)     # the Designer plugin over every control

if(NOT SOURCE_DIR)
    message(FATAL_ERROR "usage: cmake -DSOURCE_DIR=<src folder> -P check_layers.cmake")
endif()

get_filename_component(SOURCE_DIR "${SOURCE_DIR}" ABSOLUTE)
list(LENGTH layer_ranks n)
math(EXPR last "${n} - 1")
foreach(i RANGE 0 ${last} 2)
    math(EXPR j "${i} + 1")
    list(GET layer_ranks ${i} folder)
    list(GET layer_ranks ${j} rank)
    set(rank_${folder} ${rank})
endforeach()

# Which folder holds each header name.
file(GLOB headers RELATIVE "${SOURCE_DIR}" "${SOURCE_DIR}/*/*.h")
foreach(h IN LISTS headers)
    get_filename_component(folder "${h}" DIRECTORY)
    get_filename_component(name "${h}" NAME)
    if(DEFINED home_${name})
        message(FATAL_ERROR "Header name ${name} is used in two folders: ${home_${name}} and ${folder}")
    endif()
    set(home_${name} "${folder}")
endforeach()

file(GLOB_RECURSE sources RELATIVE "${SOURCE_DIR}" "${SOURCE_DIR}/*.h" "${SOURCE_DIR}/*.cpp")
set(violations "")
foreach(f IN LISTS sources)
    string(REGEX MATCH "^[^/]+" folder "${f}")
    if(NOT DEFINED rank_${folder})
        string(APPEND violations "\n  ${folder}/ has no rank: add it to the layer list")
        continue()
    endif()
    file(STRINGS "${SOURCE_DIR}/${f}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]")
    foreach(line IN LISTS includes)
        set(target_folder "")
        if(line MATCHES "<PanelKestrin/([^>]+)>")
            set(name "${CMAKE_MATCH_1}")
            if(DEFINED home_${name})
                set(target_folder "${home_${name}}")
            endif()
        elseif(line MATCHES "\"([^/\"]+)/[^\"]+\"")
            set(target_folder "${CMAKE_MATCH_1}")
        endif()
        if(target_folder STREQUAL "" OR target_folder STREQUAL folder OR NOT DEFINED rank_${target_folder})
            continue()
        endif()
        if(NOT rank_${target_folder} LESS rank_${folder})
            string(STRIP "${line}" line)
            string(APPEND violations "\n  ${f} includes ${target_folder}/ (${line})")
        endif()
    endforeach()
endforeach()

if(violations)
    message(FATAL_ERROR "Includes against the layer order (platform < shared < data < grid, date < printing < toolbars < typelib < designer):${violations}")
endif()
list(LENGTH sources count)
message(STATUS "layers: ${count} files, every include goes to its own folder or a lower one")
