# Run as a script: the demo's offscreen tour on a fresh database must create and fill the
# database, open every form and write a screenshot of each, and write its reports.
# With -DCONNECT_FILE=<file> the database is the one of the connection string in that file (the
# PostgreSQL test server's): the demo's tables are dropped first, so that the demo creates and
# fills them again on every run.
file(REMOVE_RECURSE "${WORK_DIR}")
if(CONNECT_FILE)
    file(READ "${CONNECT_FILE}" connect)
    string(STRIP "${connect}" connect)
    foreach(key Host Port Database "User ID" Password)
        if(NOT connect MATCHES "(^|;)${key}=([^;]*)")
            message(FATAL_ERROR "no ${key} in the connection string of ${CONNECT_FILE}")
        endif()
        string(REPLACE " " "_" var "${key}")
        set(pg_${var} "${CMAKE_MATCH_2}")
    endforeach()
    execute_process(COMMAND ${CMAKE_COMMAND} -E env "PGPASSWORD=${pg_Password}"
                            psql -h "${pg_Host}" -p "${pg_Port}" -U "${pg_User_ID}" -d "${pg_Database}" -v ON_ERROR_STOP=1 -q
                            -c "DROP TABLE IF EXISTS order_lines, orders, items, customers"
                    RESULT_VARIABLE rc ERROR_VARIABLE err)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "cannot drop the demo's tables on the test server: ${err}")
    endif()
    set(option --connect)
    set(database "${connect}") # one argument: the string holds ";"
else()
    set(option --database)
    set(database "${WORK_DIR}/data/orders.sqlite")
endif()
execute_process(COMMAND "${DEMO}" --tour "${WORK_DIR}/tour" ${option} "${database}"
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
if(NOT CONNECT_FILE)
    file(SIZE "${WORK_DIR}/data/orders.sqlite" size)
    if(size LESS 20000)
        message(FATAL_ERROR "the demo database was not filled (${size} bytes)")
    endif()
endif()

# The reports: each file written, in its format (by its first bytes), and the text files with
# the report's title.
set(reports
    "report-order-lines.pdf|%PDF"
    "report-order-lines.rtf|{\\rtf"
    "report-order-lines.txt|ORDER LINES BY ORDER"
    "report-customers.txt|CUSTOMERS"
    "data-report-orders.pdf|%PDF"
    "data-report-orders.rtf|{\\rtf"
    "data-report-orders.txt|ORDERS"
    "report-preview.png|PNG"
    "toolbar-trncontrol.png|PNG"
    "toolbar-usercontrol1.png|PNG"
    "toolbar-gridpanel.png|PNG"
    "print-customers-screen-form.png|PNG"
    "print-customers-screen-preview.png|PNG"
    "print-customers-file.txt|CUSTOMERS"
    "print-order-lines-screen-preview.png|PNG"
    "print-order-lines-file-form.png|PNG"
    "print-order-lines-file.txt|LINES OF ORDER"
    "print-order-lines-panel.png|PNG"
    "print-order-lines-panel.txt|ORDER LINES BY ORDER")
foreach(entry IN LISTS reports)
    string(REPLACE "|" ";" entry "${entry}")
    list(GET entry 0 name)
    list(GET entry 1 expected)
    set(path "${WORK_DIR}/tour/${name}")
    if(NOT EXISTS "${path}")
        message(FATAL_ERROR "the tour did not write ${name}")
    endif()
    file(READ "${path}" head LIMIT 2000)
    string(FIND "${head}" "${expected}" at)
    if(at LESS 0)
        message(FATAL_ERROR "${name} does not hold \"${expected}\" in its first bytes")
    endif()
endforeach()
