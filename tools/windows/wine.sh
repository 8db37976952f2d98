# shellcheck shell=sh disable=SC2034,SC2154 # the scripts that source this set $root and use the rest
#
# Sourced by the scripts that need Wine: where it lies and how a command gets to see it. Expects
# $root, the project's folder.
#
# Wine comes from a small Debian of its own, because the setup compiler and the engines that it makes
# are 32-bit programs, and the 32-bit Wine cannot be installed beside newer libraries of the machine.

# The recipe. A change here or in wineprefix.reg leads to a new folder in the cache.
wine_recipe=1
wine_release=trixie
wine_packages="wine wine64 wine32:i386 fonts-dejavu-core"
wine_compiler=innosetup@6.4.1

wine_cache=${XDG_CACHE_HOME:-$HOME/.cache}/varnel-setup/wine-$({
    printf '%s\n' "$wine_recipe" "$wine_release" "$wine_packages" "$wine_compiler"
    cat "$root/tools/windows/wineprefix.reg"
} | sha256sum | cut -c 1-12)
wine_system=$wine_cache/system     # the Debian with Wine
wine_template=$wine_cache/prefix   # every new prefix is a copy of this one
wine_iscc=$wine_cache/compiler/package/bin/ISCC.exe

# wine_is_ready: whether everything has been made.
wine_is_ready() {
    [ -d "$wine_system" ] && [ -f "$wine_iscc" ] && [ -d "$wine_template" ]
}

# in_wine_view <command>...: becomes the command, see wine-view.
in_wine_view() {
    if [ "$(id -u)" -eq 0 ]; then
        exec unshare --mount --propagation private "$root/tools/windows/wine-view" "$wine_system" "$@"
    fi
    exec unshare --map-root-user --mount --propagation private \
        "$root/tools/windows/wine-view" "$wine_system" "$@"
}

# wine_environment: exports what a Windows program finds in its environment and how quiet Wine is.
# Expects WINEPREFIX.
#
# Wine keeps these variables from its programs, unless they have WINE before their name.
wine_environment() {
    export WINEDEBUG="${WINEDEBUG--all}"
    # No menu entries in the user's own desktop, no offers to download further parts of Wine.
    export WINEDLLOVERRIDES="${WINEDLLOVERRIDES-winemenubuilder.exe,mscoree,mshtml=}"
    WINETEMP="Z:$(printf %s "${TMPDIR:-/tmp}" | tr / '\\')"
    export WINETEMP WINETMP="$WINETEMP"
    # Wine's own socket lies there, which all programs of a prefix have to find and which goes with it.
    # With TMPDIR set as well, Debian's Wine 10 ends at its start with "free(): invalid pointer".
    export XDG_RUNTIME_DIR="$WINEPREFIX/runtime"
    mkdir -p "$XDG_RUNTIME_DIR"
    chmod 700 "$XDG_RUNTIME_DIR"
    unset TMPDIR
    for assignment in QT_QPA_PLATFORM QT_QPA_FONTDIR QT_SCALE_FACTOR QT_LOGGING_RULES \
        QT_FORCE_STDERR_LOGGING; do
        eval "[ -z \"\${$assignment:-}\" ] || export WINE$assignment=\"\$$assignment\""
    done
}

# new_wine_prefix <folder>: makes a prefix there, as good as new. Windows' own files, over a gigabyte
# that no program changes, are shared with the template where both lie on one disk.
new_wine_prefix() {
    mkdir -p "$(dirname "$1")"
    rm -rf "$1.part"
    cp -a --link "$wine_template" "$1.part" 2>/dev/null || {
        rm -rf "$1.part"
        cp -a --reflink=auto "$wine_template" "$1.part"
    }
    # What Wine rewrites in place.
    for file in "$wine_template"/*.reg "$wine_template"/.update-timestamp \
        "$wine_template"/drive_c/windows/*.ini; do
        cp -a --remove-destination "$file" "$1.part${file#"$wine_template"}"
    done
    mv -T "$1.part" "$1"
}
