# Reads C++ files and reports each #include that the layering forbids. Called by tools/lint from the repository's
# root, with the public headers of Base in the variable `base_public` (names separated by blanks).
#
#   Base <- HostInterfaces <- Resources <- Models, Services <- ViewModel <- ViewControllers <- Component
#   ReferenceHost sees Base and HostInterfaces; Examples see public headers and ReferenceHost.
#   Public headers include public headers and the standard library, and no coroutine.

BEGIN {
    component = "Components/RemoteCoding/"
    count = split(base_public, names, " ")
    for (i = 1; i <= count; i++) is_base_public["Base/" names[i]] = 1

    sees["Base"] = " Base "
    sees["HostInterfaces"] = sees["Base"] "HostInterfaces "
    sees["Resources"] = sees["HostInterfaces"] "Resources "
    sees["Models"] = sees["Resources"] "Models Services "
    sees["Services"] = sees["Models"]
    sees["ViewModel"] = sees["Models"] "ViewModel "
    sees["ViewControllers"] = sees["ViewModel"] "ViewControllers "
    sees["Component"] = sees["ViewControllers"] "Component "
    sees["ReferenceHost"] = " Base HostInterfaces ReferenceHost "
    everything = sees["Component"] "ReferenceHost "
    sees["Apps"] = everything "Apps "
    sees["Tests"] = everything "Apps Tests Benchmarks "
    sees["Benchmarks"] = everything "Benchmarks "
    sees["Examples"] = " Base HostInterfaces Component ReferenceHost Examples "
}

# The layer that a repository-relative path belongs to: its folder, or the folder inside the component.
function layer(path,    parts) {
    if (index(path, component) == 1) path = substr(path, length(component) + 1)
    split(path, parts, "/")
    return parts[1]
}

function is_public(path) {
    return path in is_base_public || index(path, component "HostInterfaces/") == 1 || path == component "Component/RemoteCodingComponent.hpp"
}

function report(text) {
    printf "%s:%d: %s\n", FILENAME, FNR, text
    faults++
}

function check_own(target,    from, to) {
    from = layer(FILENAME)
    to = layer(target)
    if ((getline line < target) < 0) {
        report("\"" target "\" is no file below the repository's root")
        return
    }
    close(target)
    if (!(from in sees)) report("no layering rule knows the folder '" from "'")
    else if (index(sees[from], " " to " ") == 0) report(from " must not include " to " (\"" target "\")")
    else if (from == "Examples" && to != "Examples" && to != "ReferenceHost" && !is_public(target))
        report("an example must not include the private \"" target "\"")
    if (is_public(FILENAME) && !is_public(target)) report("a public header includes the private \"" target "\"")
}

function check_system(target,    from) {
    from = layer(FILENAME)
    if (target == "coroutine" && is_public(FILENAME)) report("a public header must not include <coroutine>")
    if (from == "Tests" || from == "Benchmarks" || from == "Apps") return
    # <cxxabi.h> belongs to the C++ runtime; every other standard header has neither a dot nor a slash.
    if (target != "cxxabi.h" && target ~ /[.\/]/) report("only the standard library is allowed here, not <" target ">")
}

/^[ \t]*#[ \t]*include[ \t]*"/ { split($0, quoted, "\""); check_own(quoted[2]) }
/^[ \t]*#[ \t]*include[ \t]*</ { split($0, angled, /[<>]/); check_system(angled[2]) }

END { exit faults > 0 }
