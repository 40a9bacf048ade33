# Compiles the library's type description with widl, into a binary type library and a C header;
# any error fails the test. Run as a script:
#   cmake -DWIDL=<widl> -DIDL=<PanelKestrin.idl> -DOUT=<folder> -P compile_idl.cmake
if(NOT WIDL OR NOT EXISTS "${WIDL}")
    message(FATAL_ERROR "widl was not found: scripts/setup.sh test installs it (Debian package wine64-tools)")
endif()
if(NOT EXISTS "${IDL}")
    message(FATAL_ERROR "No type description at ${IDL}: build the target panelkestrin-idl")
endif()
# The system interfaces it imports (ocidl.idl, the recordset's description) and the standard
# OLE type library it names.
file(GLOB ocidl /usr/include/wine/wine/windows/ocidl.idl /usr/include/wine/windows/ocidl.idl)
file(GLOB stdole /usr/lib/*/wine/*-windows/stdole2.tlb /usr/lib/wine/*-windows/stdole2.tlb)
if(NOT ocidl OR NOT stdole)
    message(FATAL_ERROR "The Wine headers or stdole2.tlb are missing (Debian packages libwine-dev, libwine)")
endif()
list(GET ocidl 0 ocidl)
list(GET stdole 0 stdole)
get_filename_component(include_dir "${ocidl}" DIRECTORY)
get_filename_component(library_dir "${stdole}" DIRECTORY)

file(MAKE_DIRECTORY "${OUT}")
foreach(output "-t;PanelKestrin.tlb" "-h;PanelKestrin.h")
    list(GET output 0 option)
    list(GET output 1 name)
    file(REMOVE "${OUT}/${name}")
    execute_process(COMMAND "${WIDL}" -I "${include_dir}" -L "${library_dir}" ${option} -o "${OUT}/${name}" "${IDL}"
                    RESULT_VARIABLE rc ERROR_VARIABLE errors)
    if(NOT rc EQUAL 0 OR NOT EXISTS "${OUT}/${name}")
        message(FATAL_ERROR "widl ${option} failed (${rc}):\n${errors}")
    endif()
endforeach()
# A binary type library starts with its signature.
file(READ "${OUT}/PanelKestrin.tlb" signature LIMIT 4 HEX)
if(NOT signature STREQUAL "4d534654") # "MSFT"
    message(FATAL_ERROR "widl wrote no type library")
endif()
message(STATUS "PanelKestrin.idl compiles: ${OUT}/PanelKestrin.tlb")
