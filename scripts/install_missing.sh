# Sourced by the other scripts: installs what a fresh Debian machine misses.
#   install_missing COMMAND:PACKAGE ... /path/to/file:PACKAGE ...
# A name with a slash is a file that must exist, any other a command.

install_missing() {
    missing=
    for wanted in "$@"; do
        name=${wanted%%:*}
        case $name in
        */*) [ -e "$name" ] && continue ;;
        *) command -v "$name" >/dev/null 2>&1 && continue ;;
        esac
        missing="$missing ${wanted#*:}"
    done
    [ -n "$missing" ] || return 0

    as_root=
    if [ "$(id -u)" != 0 ]; then as_root=sudo; fi
    if ! command -v apt-get >/dev/null 2>&1 || { [ -n "$as_root" ] && ! command -v sudo >/dev/null 2>&1; }; then
        echo "These packages are missing, and neither root nor sudo with apt-get is here to install them:$missing" >&2
        exit 1
    fi
    echo "Installing:$missing" >&2
    $as_root apt-get update -qq >&2
    # The packages are words on purpose.
    # shellcheck disable=SC2086
    DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq --no-install-recommends $missing >&2
}

# What mpeg_ts_overview is built with.
install_missing_of_overview() {
    install_missing /usr/include/CLI/CLI.hpp:libcli11-dev /usr/include/nlohmann/json.hpp:nlohmann-json3-dev \
        /usr/include/fmt/format.h:libfmt-dev /usr/share/javascript/dygraphs/dygraph.min.js:libjs-dygraphs
}
