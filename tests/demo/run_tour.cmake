# Run as a script: the demo's offscreen tour on a fresh database must create and fill the
# database, open every form and write a screenshot of each.
file(REMOVE_RECURSE "${WORK_DIR}")
execute_process(COMMAND "${DEMO}" --tour "${WORK_DIR}/tour" --database "${WORK_DIR}/data/orders.sqlite"
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
message(STATUS "${out}")
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "demo tour failed (${rc}):\n${out}\n${err}")
endif()
file(GLOB shots "${WORK_DIR}/tour/*.png")
list(LENGTH shots count)
if(count LESS 2 OR NOT EXISTS "${WORK_DIR}/tour/00-main-window.png")
    message(FATAL_ERROR "expected the main window and at least one form in ${WORK_DIR}/tour, found ${count} screenshots")
endif()
file(SIZE "${WORK_DIR}/data/orders.sqlite" size)
if(size LESS 20000)
    message(FATAL_ERROR "the demo database was not filled (${size} bytes)")
endif()
