#!/bin/bash
# Runs at full size what the tests try a few times; docs/testing.md has the figures of the last runs.
#   ./thorough.sh [proofs]    all of them, some hours, if none is named
# The proofs:
#   calls     every call to the disk fails in turn, or is the last, on each road of the program
#   power     220 power cuts on each road
#   kills     10,000 kills of a process that saves, on each engine
#   input     the fuzz targets, ten minutes each, see fuzz.sh
#   access    20,000 random statements on each sample of an Access file beside the embedded engine, a stop at each call
#             that changes the disk, the first 230 of them failing, 2,000 damages, these also under the sanitizers
#   invoices  20,000 random electronic invoices, valid for xmllint, a38 and check_documents.py
#   machines  what a user of a bare Debian 12 or 13 does, from the build to the removal of the package
# On a fresh Debian it installs what is missing first.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
# shellcheck source=cmake/packages.sh
. cmake/packages.sh

walk_roads() {
    build fault_roads
    build fault_shim
    python3 tests/faults/faults.py "$1" build/faults/fault_roads build/faults/fault_shim.so
}

prove() {
    case $1 in
    calls | power | kills)
        walk_roads "$1"
        ;;
    input)
        ./fuzz.sh
        ;;
    access)
        build core_tests
        cmake --preset sanitize >/dev/null
        cmake --build build-sanitize --target core_tests
        export TARVELLO_ACCESS_STEPS=20000 TARVELLO_ACCESS_ALL_STOPS=1 TARVELLO_ACCESS_DAMAGES=2000
        build/bin/core_tests --gtest_filter='AccessFaults.*:*AccessRandom.*:*AccessDamage.*'
        build-sanitize/bin/core_tests --gtest_filter='*AccessDamage.*'
        ;;
    invoices)
        build core_tests
        TARVELLO_E_INVOICES=20000 build/bin/core_tests --gtest_filter='EInvoiceRandom.*:EInvoiceTorture.*'
        ;;
    machines)
        for release in bookworm trixie; do
            packaging/try_on.sh $release
        done
        ;;
    *)
        echo "thorough.sh: no proof is called $1" >&2
        return 2
        ;;
    esac
}

proofs=("$@")
((${#proofs[@]})) || proofs=(access calls power kills input invoices machines)
need_packages "${packages[@]}"
for proof in "${proofs[@]}"; do
    echo "== $proof"
    prove "$proof"
done
