# shellcheck shell=bash
# What a Debian 12 needs to build, run and test Tarvello. Sourced by run.sh, test.sh and bench.sh.

# shellcheck disable=SC2034 # used by those that source this
packages=(
    # tools
    cmake g++ ninja-build pkg-config
    # windows; the Svg package brings the plug-in that draws the icons, the translations Qt's own Italian words
    qt6-base-dev libqt6svg6 qt6-translations-l10n fonts-liberation
    # web pages
    qt6-webengine-dev
    # documents: the word processor without its windows, how to drive it, and a Tahoma for the second print layout
    libreofficekit-dev libreoffice-writer-nogui fonts-wine
    # data
    libsqlite3-dev libutf8proc-dev
    # electronic invoices: XML, hashes of files, archives
    libpugixml-dev libmd-dev zlib1g-dev
    # lists as spreadsheets
    libxlsxwriter-dev
    # tests
    libgtest-dev libgmock-dev python3
    # read what the program makes or changes independently: PDF files, Access files
    poppler-utils mdbtools
    # validate electronic invoices independently, by the official schema and by another program's rules
    libxml2-utils python3-a38
    # make packages, and look whether they are as they should be
    dpkg-dev fakeroot file desktop-file-utils appstream lintian
)

# Installs those of the packages "$@" that are missing; does nothing when all are there.
need_packages() {
    local missing=() package as_root=()
    for package in "$@"; do
        if [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Mancano dei pacchetti; da amministratore / packages are missing; as root:" >&2
            echo "    apt-get install ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installo / installing: ${missing[*]}" >&2
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Builds the target $1 in release.
build() {
    # Configured once; after that the build itself sees when it has to be done again.
    if [ ! -f build/build.ninja ]; then
        cmake --preset release >build-configure.log || { cat build-configure.log; return 1; }
        rm -f build-configure.log
    fi
    cmake --build build --target "$1" >&2
}
