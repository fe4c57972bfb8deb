#!/bin/bash
# Runs the tests of Access files at full size, where test.sh tries each thing a few times: 20,000 random statements on
# each sample beside the embedded engine, a stop at each call that changes the disk, the first 230 of them failing, 2,000
# damages of each sample - these also under AddressSanitizer and UndefinedBehaviorSanitizer. And those of electronic
# invoices: 20,000 random rows, of which every document must be valid for xmllint, a38 and check_documents.py. And the
# roads of the program while every call to the disk fails, the process is killed, the power goes (docs/testing.md). And
# everything that a user of a bare Debian 12 or 13 does, from the build to the removal of the package. It takes some
# hours. On a fresh Debian it installs what is missing first.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
# shellcheck source=cmake/packages.sh
. cmake/packages.sh

need_packages "${packages[@]}"
build core_tests
build fault_roads
build fault_shim
cmake --preset sanitize >/dev/null
cmake --build build-sanitize --target core_tests

export TARVELLO_ACCESS_STEPS=20000 TARVELLO_ACCESS_ALL_STOPS=1 TARVELLO_ACCESS_DAMAGES=2000
build/bin/core_tests --gtest_filter='AccessFaults.*:*AccessRandom.*:*AccessDamage.*'
build-sanitize/bin/core_tests --gtest_filter='*AccessDamage.*'
for proof in calls power kills; do
    python3 tests/faults/faults.py $proof build/faults/fault_roads build/faults/fault_shim.so
done
TARVELLO_E_INVOICES=20000 build/bin/core_tests --gtest_filter='EInvoiceRandom.*:EInvoiceTorture.*'
for release in bookworm trixie; do
    packaging/try_on.sh $release
done
