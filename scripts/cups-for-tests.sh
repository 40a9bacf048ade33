#!/usr/bin/env bash
# Starts or stops a throw-away CUPS scheduler with one PDF queue for the printer tests.
#   cups-for-tests.sh start <state-dir>   starts it and writes <state-dir>/env
#   cups-for-tests.sh stop  <state-dir>   stops it and removes its folders
# The scheduler has its own configuration, spool, cache, state and log folders under
# <state-dir> and listens only on a Unix socket there, so it touches no system queue and
# several checkouts can run their tests at once. <state-dir>/env holds KEY=VALUE lines:
#   CUPS_SERVER      the socket, for libcups and so for Qt's printer support
#   PK_CUPS_QUEUE    the queue, pk-pdf, also the server's default destination
#   PK_CUPS_PDF_DIR  where the queue writes each job as a PDF file whose name starts with the
#                    job's title (lower case, punctuation dropped) and ends in its job id
#   PK_CUPS_PAGE_LOG the page log: a "total" line per finished job, with its title and the
#                    number of sheets (pages times copies)
# The PDF backend reads its settings only from the system's CUPS folder, from a file named
# after the device URI, so a run writes /etc/cups/cups-pdf-<run id>.conf and removes it on
# stop. That backend runs only under a scheduler started as root: this script needs root.
set -euo pipefail
action=${1:?start or stop}
state=${2:?state folder}
queue=pk-pdf
backend_conf_dir=/etc/cups

stop_server() {
    local pid sockdir
    if [ -f "$state/cupsd.pid" ]; then
        pid=$(cat "$state/cupsd.pid")
        if kill "$pid" 2>/dev/null; then
            for _ in $(seq 1 100); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
            kill -9 "$pid" 2>/dev/null || true
        fi
    fi
    [ -f "$state/runid" ] && rm -f "$backend_conf_dir/cups-pdf-$(cat "$state/runid").conf"
    if [ -f "$state/sockdir" ]; then
        sockdir=$(cat "$state/sockdir")
        case "$sockdir" in /tmp/panelkestrin-cups.*) rm -rf "$sockdir" ;; esac
    fi
    rm -rf "$state/server" "$state/run" "$state/spool" "$state/cache" "$state/log" "$state/pdf" \
           "$state/pdf-spool" "$state/cupsd.pid" "$state/runid" "$state/sockdir" "$state/env"
}

# Backend settings left behind by runs that were killed before their stop, recognised by an
# output folder that no longer exists.
remove_stale_backend_settings() {
    local f out
    for f in "$backend_conf_dir"/cups-pdf-pk[0-9]*.conf; do
        [ -e "$f" ] || continue
        out=$(sed -n 's/^Out //p' "$f")
        [ -d "$out" ] || rm -f "$f"
    done
}

answers() {
    CUPS_SERVER=$socket lpstat -r 2>/dev/null | grep -q "is running"
}

fail() {
    echo "the CUPS test server did not start: $1" >&2
    cat "$state/log/cupsd.out" "$state/log/error_log" >&2 2>/dev/null || true
    stop_server
    exit 1
}

case "$action" in
start)
    command -v cupsd >/dev/null && command -v lpadmin >/dev/null \
        || { echo "CUPS not found (install the cups package)" >&2; exit 1; }
    [ -x /usr/lib/cups/backend/cups-pdf ] \
        || { echo "the PDF backend is not installed (install printer-driver-cups-pdf)" >&2; exit 1; }
    [ "$(id -u)" = 0 ] \
        || { echo "the CUPS test server must be started as root: its PDF backend runs only under a root scheduler" >&2; exit 1; }
    mkdir -p "$state"
    state=$(cd "$state" && pwd)
    stop_server
    remove_stale_backend_settings
    runid=pk$(date +%s)$$
    echo "$runid" > "$state/runid"
    mkdir -p "$state/server/ppd" "$state/run" "$state/spool/tmp" "$state/cache" "$state/log" "$state/pdf"
    chmod 0755 "$state/server" "$state/run" "$state/cache" "$state/log"
    chmod 0710 "$state/spool"
    chmod 1777 "$state/spool/tmp"

    # A Unix socket path holds about a hundred bytes; a deep build tree gets a short folder
    # under /tmp for the socket alone.
    socket=$state/run/cups.sock
    if [ ${#socket} -gt 100 ]; then
        sockdir=$(mktemp -d /tmp/panelkestrin-cups.XXXXXX)
        chmod 0755 "$sockdir"
        echo "$sockdir" > "$state/sockdir"
        socket=$sockdir/cups.sock
    fi

    cat > "$state/server/cups-files.conf" <<EOF
ServerRoot $state/server
RequestRoot $state/spool
TempDir $state/spool/tmp
CacheDir $state/cache
StateDir $state/run
ErrorLog $state/log/error_log
AccessLog $state/log/access_log
PageLog $state/log/page_log
SystemGroup root
FileDevice No
EOF
    cat > "$state/server/cupsd.conf" <<EOF
LogLevel info
Listen $socket
Browsing No
WebInterface No
DefaultAuthType None
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
EOF
    # Jobs land in the build tree, named "<title>...-job_<id>.pdf".
    cat > "$backend_conf_dir/cups-pdf-$runid.conf" <<EOF
Out $state/pdf
AnonDirName $state/pdf
Spool $state/pdf-spool
GSTmp $state/pdf-spool
Label 2
Grp root
Log $state/log
EOF

    cupsd -t -c "$state/server/cupsd.conf" -s "$state/server/cups-files.conf" >"$state/log/cupsd.out" 2>&1 \
        || fail "its configuration was refused"
    cupsd -f -c "$state/server/cupsd.conf" -s "$state/server/cups-files.conf" >>"$state/log/cupsd.out" 2>&1 &
    echo $! > "$state/cupsd.pid"
    for _ in $(seq 1 100); do
        answers && break
        kill -0 "$(cat "$state/cupsd.pid")" 2>/dev/null || break
        sleep 0.1
    done
    answers || fail "it does not answer on $socket"

    # PDF to PostScript through pdftocairo: the default Ghostscript route loses the fonts'
    # Unicode mapping on its way back to PDF, and pdftotext would read symbols.
    CUPS_SERVER=$socket lpadmin -p "$queue" -v "cups-pdf:/$runid" -E \
        -m lsb/usr/cups-pdf/CUPS-PDF_opt.ppd -o pdftops-renderer-default=pdftocairo \
        >"$state/log/lpadmin.out" 2>&1 || { cat "$state/log/lpadmin.out" >&2; fail "the queue could not be added"; }
    CUPS_SERVER=$socket lpadmin -d "$queue" >>"$state/log/lpadmin.out" 2>&1 \
        || { cat "$state/log/lpadmin.out" >&2; fail "the queue could not be made the default"; }
    cat > "$state/env" <<EOF
CUPS_SERVER=$socket
PK_CUPS_QUEUE=$queue
PK_CUPS_PDF_DIR=$state/pdf
PK_CUPS_PAGE_LOG=$state/log/page_log
EOF
    echo "CUPS test server running on $socket: queue $queue writes PDF files to $state/pdf"
    ;;
stop)
    [ -d "$state" ] || { echo "CUPS test server not running"; exit 0; }
    state=$(cd "$state" && pwd)
    stop_server
    echo "CUPS test server stopped"
    ;;
*)
    echo "usage: $0 start <state-dir> | stop <state-dir>" >&2
    exit 2
    ;;
esac
