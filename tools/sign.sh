#!/usr/bin/env bash
# Signs a file, when there is a certificate: see tools/packaging.sh. For programs that start others.
set -euo pipefail
# shellcheck source=tools/console.sh
source "$(dirname "${BASH_SOURCE[0]}")/console.sh"
# shellcheck source=tools/packaging.sh
source "$ROOT/tools/packaging.sh"
sign "$@"
