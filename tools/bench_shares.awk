# Reads dumps of callgrind (written with --compress-strings=no --compress-pos=no) and prints for each what the component and what
# the host has spent, as one line of JSON:
#
#   {"name": "pull, first/component", "size": 1000, "job": 0, "component": {"Ir": …}, "host": {"Ir": …}}
#
# All are for one operation. The trigger of a dump is "name/side/size/operations", or "name/side/size/operations/job" of a
# single job, which is one operation whatever it did.
#
# The component's is what its shared object does itself, and what the C and C++ libraries do when it calls them; the host's is the
# same of the program. Where a library calls back, as when it destroys an exception, it calls the side that it was called
# from. Both together must be the dump's own total, but for the instruction or two that end the count; else exit code 1.
#
# The program's `operator new` and `delete`, which only count, belong to whoever calls them.

function side_of(object, file) {
    if (object ~ /\/libBenchmarkedComponent\.so/) return "component"
    if (object ~ /\/SynchroniserBenchmarks$/ && file !~ /Support\/Allocations\.cpp$/) return "host"
    return "library"
}

function add(side, line, sign,    fields, count, column) {
    count = split(line, fields, " ")
    for (column = 2; column <= count; ++column) cost[side, column - 1] += sign * fields[column]
}

function json(side,    column, text) {
    for (column = 1; column <= events; ++column)
        text = text sprintf("%s\"%s\": %.1f", (column > 1 ? ", " : ""), event[column], cost[side, column] / operations)
    return "{" text "}"
}

function finish(    parts, part, count, found) {
    if (label == "") return
    count = split(label, part, "/")
    operations = count > 4 ? 1 : part[4]
    found = cost["component", 1] + cost["host", 1]
    if (operations == 0 || found < total - slack || found > total + slack) {
        printf "%s: %d of %d instructions have found their side\n", label, found, total >"/dev/stderr"
        failed = 1
    }
    printf "{\"name\": \"%s/%s\", \"size\": %d, \"job\": %s, \"component\": %s, \"host\": %s}\n", part[1], part[2], part[3],
           (count > 4 ? part[5] : "null"), json("component"), json("host")
}

BEGIN { slack = 16 }
FNR == 1 {
    finish()
    label = object = file = called_object = called_file = ""
    total = is_call = 0
    split("", cost)
}
/^desc: Trigger: Client Request: / { sub(/^desc: Trigger: Client Request: /, ""); label = $0; next }
/^events: / { events = NF - 1; for (i = 1; i <= events; ++i) event[i] = $(i + 1); next }
/^totals: / { total = $2; next }
/^ob=/ { object = substr($0, 4); next }
/^fl=/ { file = substr($0, 4); next }
/^fn=/ { side = side_of(object, file); place = file; called_object = called_file = ""; next }
/^f[ie]=/ { place = substr($0, 4); next }
/^cob=/ { called_object = substr($0, 5); next }
/^cf[il]=/ { called_file = substr($0, 5); next }
/^cfn=/ { next }
/^calls=/ { is_call = 1; next }
/^[0-9]/ {
    if (!is_call) {
        if (side != "library") add(side, $0, 1)
        next
    }
    is_call = 0
    # A call without an object or a file of its own goes to the caller's.
    called = side_of(called_object == "" ? object : called_object, called_file == "" ? place : called_file)
    if (side != "library" && called == "library") add(side, $0, 1)
    if (side == "library" && called != "library") add(called, $0, -1)
    called_object = called_file = ""
}
END {
    finish()
    exit failed
}
