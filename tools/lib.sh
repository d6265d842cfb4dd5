# Shared by the tools: where the project is, and how they talk.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
started=$SECONDS

say() { printf '%s\n' "$*"; }
die() {
    printf '%s\n' "$*" >&2
    exit 1
}

# step "what is being done" command...: one line on the screen; the command's output only if it fails.
step() {
    local what=$1 log begin=$SECONDS
    shift
    log=$(mktemp)
    printf '%s ... ' "$what"
    if "$@" > "$log" 2>&1 < /dev/null; then
        printf '%d s\n' "$((SECONDS - begin))"
        rm -f "$log"
    else
        printf 'failed\n'
        cat "$log" >&2
        rm -f "$log"
        exit 1
    fi
}

configure_and_build() { # preset [targets...]
    local preset=$1
    shift
    cmake -S "$root" --preset "$preset" && cmake --build "$root/build/$preset" ${1:+--target "$@"}
}
