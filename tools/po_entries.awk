# Reads string tables in PO format and prints "comment<TAB>key" for each comment of each entry. A comment is an
# extracted comment (#.) or, as xgettext makes of a call's last argument, a context (msgctxt). Called by tools/lint.

function unquoted(line) {
    sub(/^[^"]*"/, "", line)
    sub(/"[ \t\r]*$/, "", line)
    gsub(/\\"/, "\"", line)
    gsub(/\\\\/, "\\", line)
    return line
}

function finish(    i) {
    if (key != "" && count == 0) print "\t" key
    for (i = 1; i <= count; i++) if (key != "") print comments[i] "\t" key
    key = ""
    count = 0
    field = ""
}

# What stands before an entry begins it.
field == "msgstr" && /^(#|msgctxt|msgid)/ { finish() }

/^#\. / { comments[++count] = substr($0, 4) }
/^msgctxt / { field = "msgctxt"; comments[++count] = "" }
/^msgid / { field = "msgid" }
/^msgstr / { field = "msgstr" }
/^(msg[a-z]+ )?"/ {
    if (field == "msgctxt") comments[count] = comments[count] unquoted($0)
    if (field == "msgid") key = key unquoted($0)
}

END { finish() }
