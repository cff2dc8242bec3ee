# shellcheck shell=bash
# What the scripts here share: the repository's root, plain progress lines, quiet builds. Sourced, never run.

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
jobs="$(nproc)"

# Progress goes to standard error: standard output belongs to the program or the result.
say() { printf '%s\n' "$*" >&2; }

die() {
    say "error: $*"
    exit 1
}

# The comment at the head of the calling script is its help.
print_help() { awk 'NR > 1 { if (!/^#/) exit; sub(/^# ?/, ""); print }' "$0"; }

# The tracked files that match the given patterns; files deleted in the working tree are left out.
tracked() {
    (cd "$root" && git -c safe.directory='*' ls-files -- "$@" | while IFS= read -r file; do
        if [[ -f "$file" ]]; then printf '%s\n' "$file"; fi
    done)
}

# run_logged LOG COMMAND...: runs with the output in LOG; on failure shows the log's tail.
run_logged() {
    local log="$1"
    shift
    if ! "$@" >>"$log" 2>&1 </dev/null; then
        say "--- the last lines of $log ---"
        tail -n 60 "$log" >&2
        return 1
    fi
}

# For the programs of the presets asan and tsan.
export_sanitizer_options() {
    local thread="halt_on_error=1:second_deadlock_stack=1:suppressions='$root/tools/thread-sanitizer.supp'"
    export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_stack_use_after_return=1:strict_string_checks=1}"
    export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
    export TSAN_OPTIONS="${TSAN_OPTIONS:-$thread}"
}

# build_preset PRESET [CMAKE-OPTION... --] [TARGET...]: configures and builds quietly, into build/PRESET.
build_preset() {
    local preset="$1" log="$root/build/$1.log" options=() targets=()
    shift
    while (($#)); do
        if [[ "$1" == -- ]]; then
            options=("${targets[@]}")
            targets=()
        else
            targets+=("$1")
        fi
        shift
    done
    mkdir -p "$root/build"
    : >"$log"
    say "Configuring '$preset' ..."
    (cd "$root" && run_logged "$log" cmake --preset "$preset" "${options[@]}") ||
        die "configuring '$preset' failed"
    say "Building '$preset' ${targets[*]:-(everything)} (log: build/$preset.log) ..."
    (cd "$root" && run_logged "$log" cmake --build --preset "$preset" -j "$jobs" \
        ${targets:+--target "${targets[@]}"}) || die "building '$preset' failed"
}
