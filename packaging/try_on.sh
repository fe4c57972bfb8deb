#!/bin/bash
# Tries Tarvello on a bare Debian, as people have it who have just installed the system: builds and tests it there, makes
# the package, installs it on another bare one, starts it under X11 and under Wayland, upgrades and removes it.
#   packaging/try_on.sh bookworm|trixie [folder for logs and pictures]
# On a Debian with a network, as root or with sudo. It takes about an hour on two cores; with TARVELLO_CCACHE=FOLDER,
# which must be empty or of an earlier run with the same release, what is compiled is kept there and the next run takes
# less.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
# shellcheck source=cmake/packages.sh
. cmake/packages.sh

release=${1:?"bookworm or trixie"}
out=$(realpath -m "${2:-build-try/$release}")
if [ -z "${TARVELLO_TRY_INSIDE:-}" ]; then
    # It makes systems of their own and enters them.
    [ "$(id -u)" -eq 0 ] || exec sudo --preserve-env=TARVELLO_CCACHE,TMPDIR,http_proxy "$0" "$release" "$out"
    need_packages debootstrap xvfb weston imagemagick procps python3
    # Mounts and processes of its own, so that nothing of them is left behind however it ends.
    TARVELLO_TRY_INSIDE=yes exec unshare --mount --pid --fork --kill-child "$0" "$release" "$out"
fi

mount -t proc proc /proc
rm -rf "$out"
mkdir -p "$out"
work=$(mktemp -d "${TMPDIR:-/var/tmp}/tarvello-try-XXXXXX")
chmod 755 "$work"
builder=$work/builder # where it is built
user=$work/user       # where it is only installed
settings=home/prova/.config/tarvello/impostazioni
data=$user/home/prova/.local/share/tarvello
screens=()

clean_up() {
    kill "${screens[@]}" 2>/dev/null || true
    umount --lazy --quiet "$work"/*/proc "$work"/*/dev/shm "$work"/*/ccache "$work"/*/tmp/.X11-unix 2>/dev/null || true
    rm -rf --one-file-system "$work"
}
trap clean_up EXIT
trap "exit 1" INT TERM # as the first process of its own world it would not hear them

# step NAME COMMAND...: runs a command; what it prints goes to a file of that name.
step() {
    local name=$1 start=$SECONDS
    shift
    printf '%s %-22s ' "$(date +%H:%M:%S)" "$name"
    local status
    set +e # not in a condition: it would hide what fails in the midst of a function
    (set -e; "$@") >"$out/$name.log" 2>&1
    status=$?
    set -e
    if [ $status -ne 0 ]; then
        echo "FAILED, see $out/$name.log"
        tail -n 30 "$out/$name.log"
        exit 1
    fi
    echo "ok, $((SECONDS - start)) s"
}

# in_as SYSTEM USER COMMAND: a shell command of that user, in that system.
in_as() {
    local home=/home/prova
    [ "$2" != root ] || home=/root
    chroot --userspec="$2:$2" "$1" env -i HOME=$home USER="$2" LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        ${TARVELLO_CCACHE:+CCACHE_DIR=/ccache CCACHE_COMPILERCHECK=content} ${http_proxy:+http_proxy="$http_proxy"} \
        bash -c "cd; $3"
}

# A bare system with an ordinary user.
bare_system() {
    cp -a "$work/bare" "$1"
    echo force-unsafe-io >"$1/etc/dpkg/dpkg.cfg.d/quick" # it is thrown away
    mount -t proc proc "$1/proc"
    mkdir -p "$1/dev/shm"
    mount -t tmpfs -o mode=1777 tmpfs "$1/dev/shm"
    chroot "$1" useradd --create-home --shell /bin/bash prova
    [ -n "${TARVELLO_CCACHE:-}" ] || return 0
    mkdir -p "$1/ccache" "$TARVELLO_CCACHE"
    chmod -R a+rwX "$TARVELLO_CCACHE"
    mount --bind "$TARVELLO_CCACHE" "$1/ccache"
    in_as "$1" root "apt-get install -y -qq --no-install-recommends ccache"
}

copy_sources() {
    mkdir "$builder/home/prova/tarvello"
    git ls-files -z | tar c --null --files-from=- | tar x -C "$builder/home/prova/tarvello"
    chroot "$builder" chown -R prova: /home/prova
}

give_sudo() {
    in_as "$builder" root "apt-get install -y -qq --no-install-recommends sudo"
    echo 'prova ALL=(ALL) NOPASSWD: ALL' >"$builder/etc/sudoers.d/prova"
}

in_sources() { in_as "$builder" "$1" "cd ~prova/tarvello && $2"; }

# refused USER COMMAND WORDS: the command must fail, with these words.
refused() {
    local said
    if said=$(in_sources "$1" "$2" 2>&1); then
        echo "This did not fail: $2"
        return 1
    fi
    echo "$said"
    grep -qF "$3" <<<"$said"
}

# All of them, none skipped.
all_tests() {
    in_sources "$1" ./test.sh | tee "$work/tests"
    grep -q "100% tests passed" "$work/tests" || return 1
    if grep -E 'Skipped|Not Run|Disabled' "$work/tests"; then return 1; fi
}

make_packages() {
    in_sources prova "cd build && cpack -G 'DEB;TGZ' && cpack -G DEB -B older -D CPACK_PACKAGE_VERSION=3.9.0"
    cp "$builder"/home/prova/tarvello/build/{packages,older}/*.deb "$user/root"
    cp "$builder"/home/prova/tarvello/build/packages/*.{deb,tar.gz} "$out"
    dpkg-deb --info "$out"/*.deb
}

# With what it depends on, and nothing that it recommends.
install_package() {
    in_as "$user" root "apt-get update -qq && apt-get install -y -qq --no-install-recommends ./$1 && dpkg-query --show tarvello"
}

remove_package() {
    in_as "$user" root "apt-get purge -y -qq tarvello && apt-get autoremove -y -qq"
    if find "$user/usr" -iname '*tarvello*' | grep .; then return 1; fi
}

start_screens() {
    mkdir -p /tmp/.X11-unix
    mkdir -m 700 "$work/wayland"
    Xvfb :87 -screen 0 1280x1024x24 -ac -nolisten tcp >"$out/xvfb.log" 2>&1 &
    screens+=($!)
    local renderer=--use-pixman
    if grep -q -- --renderer= <<<"$(weston --help)"; then renderer=--renderer=pixman; fi
    XDG_RUNTIME_DIR=$work/wayland weston --backend=headless-backend.so $renderer --width=1280 --height=1024 --debug \
        --socket=wayland-87 --idle-time=0 >"$out/weston.log" 2>&1 &
    screens+=($!)
    until [ -S /tmp/.X11-unix/X87 ] && [ -S "$work/wayland/wayland-87" ]; do sleep 0.2; done
    chmod 777 "$work/wayland/wayland-87"
    for system in "$builder" "$user"; do
        mkdir -p "$system/tmp/.X11-unix"
        mount --bind /tmp/.X11-unix "$system/tmp/.X11-unix"
        ln "$work/wayland/wayland-87" "$system/tmp/wayland-87"
    done
}

# take_picture x11|wayland FILE
take_picture() {
    if [ "$1" = x11 ]; then
        DISPLAY=:87 import -window root "$2"
    else
        mkdir -p "$work/shot"
        (cd "$work/shot" && XDG_RUNTIME_DIR=$work/wayland WAYLAND_DISPLAY=wayland-87 weston-screenshooter && mv ./*.png "$2")
    fi
}

# More differs than a caret.
differ() {
    { compare -metric AE "$1" "$2" null: 2>&1 || true; } | awk '{ exit !($1 > 500) }'
}

# starts SYSTEM x11|wayland PROGRAM PICTURE: starts it, waits until it shows something that stays and has written its
# settings, as it does with the first window that waits for the user, takes the picture, and ends it as the end of a
# desktop session does.
starts() {
    local session="DISPLAY=:87 XDG_SESSION_TYPE=x11" plugin=libqxcb same=0 until=$((SECONDS + 90)) shell program
    if [ "$2" = wayland ]; then
        session="WAYLAND_DISPLAY=/tmp/wayland-87 XDG_SESSION_TYPE=wayland" plugin=libqwayland
    fi
    take_picture "$2" "$work/empty.png"
    cp "$work/empty.png" "$work/last.png"
    in_as "$1" prova "mkdir -p -m 700 /tmp/run; exec env XDG_RUNTIME_DIR=/tmp/run $session $3" &
    shell=$!
    while [ $same -lt 4 ]; do
        sleep 1
        kill -0 $shell || return 1
        [ $SECONDS -lt $until ] || { echo "Nothing stays on the screen."; return 1; }
        take_picture "$2" "$4"
        if [ -f "$1/$settings" ] && differ "$4" "$work/empty.png" && ! differ "$4" "$work/last.png"; then
            same=$((same + 1))
        else
            same=0
        fi
        cp "$4" "$work/last.png"
    done
    program=$(pgrep --newest --exact tarvello)
    grep -o '[^/]*libq[a-z]*\.so' "/proc/$program/maps" | sort -u
    grep -q libqsvg "/proc/$program/maps"
    grep -q $plugin "/proc/$program/maps"
    kill -TERM "$program"
    wait $shell
}

# The archive is the user's: it outlives the program, and nobody else reads it.
customer() {
    python3 -c "import sqlite3, sys
with sqlite3.connect('$data/tarvello.mdb') as archive: print(archive.execute(sys.argv[1]).fetchall())" "$1"
}

add_customer() {
    customer "INSERT INTO Clienti (Cognome_Ragione_Sociale, Codice_Fiscale) VALUES ('Rossi', 'RSSMRA80A01H501U')"
}

has_customer() {
    customer "SELECT Cognome_Ragione_Sociale FROM Clienti" | tee /dev/stderr | grep -qF "[('Rossi',)]"
}

is_private() {
    find "$data" "$user/home/prova/.config/tarvello" -printf '%m %p\n' | tee "$work/modes"
    if grep -vE '^[67]00 ' "$work/modes"; then return 1; fi
}

list_data() { (cd "$user/home/prova" && find . -type f -exec sha256sum {} + | sort -k 2); }
remember() { list_data | tee "$work/before"; }
is_as_before() { list_data | diff "$work/before" -; }

echo "$release, logs and pictures in $out"
step system debootstrap --variant=minbase "$release" "$work/bare" http://deb.debian.org/debian
step system-to-build bare_system "$builder"
step system-to-use bare_system "$user"
step sources copy_sources
start_screens

# Built as an ordinary user: without sudo, with it, without a screen, with one.
step no-sudo refused prova ./run.sh "apt-get install cmake"
step sudo give_sudo
step run-no-screen refused prova ./run.sh "Non c'è uno schermo"
step run starts "$builder" x11 tarvello/run.sh "$out/run.png"
step test all_tests prova
step packages make_packages
step bench in_sources prova "./bench.sh --benchmark_filter='fiscal code|municipality'"

# And as root, where something is missing again.
step remove-some in_as "$builder" root "apt-get remove -y -qq mdbtools lintian"
step run-as-root refused root ./run.sh "Non c'è uno schermo"
step test-as-root all_tests root

# The package, on a system that has never seen anything of it.
step install-older install_package './tarvello_3.9.0*.deb'
step start-x11 starts "$user" x11 tarvello "$out/x11.png"
step private is_private
step customer add_customer
step upgrade install_package './tarvello_[!3]*.deb'
step start-wayland starts "$user" wayland tarvello "$out/wayland.png"
step customer-is-there has_customer
step private-still is_private
step remember remember
step remove remove_package
step data-is-there is_as_before

grep -h "tests passed" "$out/test.log" "$out/test-as-root.log"
ls "$out"/*.png
