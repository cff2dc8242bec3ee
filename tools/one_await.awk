# Reports statements with more than one co_await. Called by tools/lint. Comments, texts and characters are cut out first;
# a statement ends at a semicolon or brace.

FNR == 1 { in_comment = 0; awaits = 0 }

{
    line = $0
    gsub(/\\./, "", line)
    gsub(/"[^"]*"/, "", line)
    gsub(/'[;{}"\/]'/, "", line)
    while (1) {
        if (in_comment) {
            end = index(line, "*/")
            if (!end) { line = ""; break }
            line = substr(line, end + 2)
            in_comment = 0
        }
        slashes = index(line, "//")
        stars = index(line, "/*")
        if (slashes && (!stars || slashes < stars)) { line = substr(line, 1, slashes - 1); break }
        if (!stars) break
        rest = substr(line, stars + 2)
        line = substr(line, 1, stars - 1) " " rest
        end = index(rest, "*/")
        if (end) { line = substr(line, 1, stars - 1) " " substr(rest, end + 2); continue }
        line = substr(line, 1, stars - 1)
        in_comment = 1
        break
    }
    pieces = split(line, parts, /[;{}]/)
    for (i = 1; i <= pieces; i++) {
        if (i > 1) awaits = 0
        parts[i] = " " parts[i] " "
        gsub(/[^A-Za-z0-9_]/, "  ", parts[i])
        awaits += gsub(/ co_await /, " ", parts[i])
        if (awaits > 1) {
            printf "%s:%d: more than one co_await in a statement\n", FILENAME, FNR
            faults++
            awaits = 0
        }
    }
}

END { exit faults > 0 }
