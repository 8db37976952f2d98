# shellcheck shell=sh disable=SC2034,SC2154 # the scripts that source this set $root and use the lists
#
# Sourced by ./run and ./test: gets a machine from nothing to a built program. What is done already
# costs a moment.
#
# Expects $root, the project's folder.

# What building, running and testing takes, by the names of Debian 12.
packages="
    cmake g++ ninja-build
    qt6-base-dev qt6-svg-dev qt6-wayland libxcb1-dev
    xvfb xauth openbox x11-xserver-utils xdotool imagemagick
    dbus at-spi2-core gir1.2-atspi-2.0 python3 python3-gi
    fonts-dejavu-core
"
# What some of the tests take beyond that.
analysis_packages="clang clang-format libclang-rt-dev orca fonts-open-sans"
gates_packages="clang clang-tidy libclang-rt-dev shellcheck"
windows_test_packages="tesseract-ocr tesseract-ocr-eng osslsigncode openssl python3-yaml softhsm2 libengine-pkcs11-openssl"

started=$(date +%s)

# say <text>: a line with the time that has passed.
say() {
    printf '[%3d s] %s\n' $(($(date +%s) - started)) "$1"
}

# step <title>: begins a step of what the user has asked for.
step() {
    say "$1"
    steps="${steps:-}$(date +%s) $1
"
}

# step_times: how long each step took, and all of them.
step_times() {
    printf '%s%s end\n' "$steps" "$(date +%s)" | awk -v started="$started" '
        NR > 1 { printf "%5d s  %s\n", $1 - begun, title }
        { begun = $1; title = $0; sub(/^[0-9]+ /, "", title) }
        END { printf "%5d s  in all\n", begun - started }'
}

# give_up <sentence>: ends with what the user can do about it.
give_up() {
    printf '%s\n' "$1" >&2
    exit 1
}

# product <key>: a value of src/product/product.ini, which says who we are.
product() {
    value=$(sed -n "s/^$1=//p" "$root/src/product/product.ini")
    [ -n "$value" ] || give_up "src/product/product.ini has no $1."
    printf '%s' "$value"
}

install_packages() {
    missing=
    for package in $packages; do
        status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) || status=
        [ "$status" = installed ] || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0

    command -v apt-get >/dev/null \
        || give_up "This needs Debian 12 or a relative of it; elsewhere install yourself:$missing."
    as_root=
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || give_up "Install these packages as root, then try again:$missing."
        as_root=sudo
    fi
    say "Installing with apt:$missing"
    log=$(mktemp)
    say "Fetching the lists of packages (1 of 2)"
    watched "$log" $as_root apt-get update -q \
        || give_up "The lists of packages could not be fetched; see above, and the whole story in $log."
    say "Installing the packages (2 of 2)"
    # shellcheck disable=SC2086 # the list is meant to be split
    watched "$log" $as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends $missing \
        || give_up "The packages could not be installed; see above, and the whole story in $log."
    rm -f "$log"
}

# watched <log> <command>...: runs a command that talks too much, showing where it is now and then.
watched() {
    log_file=$1
    shift
    "$@" >>"$log_file" 2>&1 &
    command_pid=$!
    # What runs in the background does not hear Ctrl+C; a function's work is done by its children.
    trap 'kill $command_pid $(cat /proc/$command_pid/task/*/children) 2>/dev/null; exit 130' INT TERM
    waited=0
    # Not kill -0: with sudo the process is somebody else's.
    while [ -d /proc/$command_pid ] && ! grep -q '^State:.Z' /proc/$command_pid/status 2>/dev/null; do
        sleep 1
        waited=$((waited + 1))
        [ $((waited % 10)) -ne 0 ] || say "… $(tail -n 1 "$log_file" | cut -c 1-90)"
    done
    trap - INT TERM
    wait $command_pid && return 0
    tail -n 20 "$log_file" >&2
    return 1
}

# build <preset> [<target>...]: configures if that was never done, then builds what has changed; all that
# the preset builds, or only these. A subshell, so that the caller's working folder does not change.
build() (
    preset=$1
    shift
    cd "$root" || exit 1
    if [ ! -f "build/$preset/build.ninja" ]; then
        say "Configuring build/$preset"
        output=$(mktemp)
        if ! cmake --preset "$preset" >"$output" 2>&1; then
            tail -n 20 "$output" >&2
            give_up "CMake could not configure the project; see above, and the whole story in $output."
        fi
        rm -f "$output"
    fi
    say "Building build/$preset"
    [ $# -eq 0 ] || set -- --target "$@"
    NINJA_STATUS='[%f of %t, %e s] ' cmake --build --preset "$preset" "$@" \
        || give_up "The build failed; the first error above says where."
)
