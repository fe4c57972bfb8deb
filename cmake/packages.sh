# shellcheck shell=bash
# What a Debian 12 or 13 needs to build, run and test Tarvello. Sourced by run.sh, test.sh and the like.
# "new|old" are the names of one thing in newer and older releases: the first that the release has is taken.

# shellcheck disable=SC2034 # used by those that source this
packages=(
    # tools
    cmake g++ ninja-build pkg-config
    # windows; the plug-ins that draw the icons and speak with Wayland, the toolkit's own Italian words
    qt6-base-dev "qt6-svg-plugins|libqt6svg6" qt6-wayland qt6-translations-l10n fonts-liberation
    # web pages
    qt6-webengine-dev
    # documents: the word processor without its windows, how to drive it, and a Tahoma for the second print layout
    libreofficekit-dev libreoffice-writer-nogui fonts-wine
    # data
    libsqlite3-dev libutf8proc-dev
    # electronic invoices: XML, hashes of files, archives
    libpugixml-dev libmd-dev zlib1g-dev
    # lists as spreadsheets; pkg-config asks for minizip too where they are made with it
    libxlsxwriter-dev libminizip-dev
    # tests; the windows are looked at in wide letters too
    libgtest-dev libgmock-dev python3 fonts-dejavu-core fonts-opendyslexic
    # read what the program makes or changes independently: PDF files, Access files
    poppler-utils mdbtools
    # validate electronic invoices independently, by the official schema and by another program's rules
    libxml2-utils python3-a38
    # make packages, and look whether they are as they should be
    dpkg-dev fakeroot file desktop-file-utils appstream lintian
)

is_installed() {
    [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

is_known() {
    [ -n "$(apt-cache show --no-all-versions "$1" 2>/dev/null)" ]
}

# Sets `missing` to the names of those of the packages "$@" that are not installed, and `unknown` to those that
# this release does not have by any name.
look_for_packages() {
    local names name
    missing=() unknown=()
    for names in "$@"; do
        IFS='|' read -ra names <<<"$names"
        for name in "${names[@]}"; do
            is_installed "$name" && continue 2
            if is_known "$name"; then
                missing+=("$name")
                continue 2
            fi
        done
        unknown+=("${names[0]}")
    done
}

# Installs those of the packages "$@" that are missing; does nothing when all are there.
need_packages() {
    local missing unknown as_root=()
    look_for_packages "$@"
    [ ${#missing[@]} -eq 0 ] && [ ${#unknown[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Mancano dei pacchetti; da amministratore / packages are missing; as root:" >&2
            echo "    apt-get install ${missing[*]} ${unknown[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get update -qq
    look_for_packages "$@"
    if [ ${#unknown[@]} -ne 0 ]; then
        # shellcheck disable=SC1091 # of the system
        local release && release=$(. /etc/os-release && echo "$PRETTY_NAME")
        echo "$release non ha / does not have: ${unknown[*]}" >&2
        echo "Tarvello si costruisce su Debian 12 e 13; su Ubuntu 24.04 serve anche l'archivio \"universe\"." >&2
        echo "Tarvello builds on Debian 12 and 13; Ubuntu 24.04 needs its archive \"universe\" too." >&2
        return 1
    fi
    echo "Installo / installing: ${missing[*]}" >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Which of CMakePresets.json build() and ctest take.
preset=${TARVELLO_PRESET:-release}

# Builds the target $1.
build() {
    local folder=build
    [ "$preset" = release ] || folder=build-$preset
    # Configured once; after that the build itself sees when it has to be done again.
    if [ ! -f "$folder/build.ninja" ]; then
        cmake --preset "$preset" >build-configure.log || { cat build-configure.log; return 1; }
        rm -f build-configure.log
    fi
    cmake --build "$folder" --target "$1" >&2
}
