#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need (as root, or through sudo).
set -euo pipefail
packages=(
    cmake ninja-build g++ clang libclang-rt-14-dev pkg-config
    libgtest-dev libgmock-dev libbenchmark-dev
    libcli11-dev libfmt-dev libsqlite3-dev libssl-dev libxml2-dev libpq-dev postgresql
    nlohmann-json3-dev libqpdf-dev libcairo2-dev fonts-dejavu-core qpdf poppler-utils
    libxml2-utils default-jre-headless libsaxonhe-java python3-dbfread
    locales
)
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" \
        || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    echo "Installing: ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
# A comma-decimal locale, so that the tests show number formatting ignoring the process locale.
if ! locale -a 2>/dev/null | grep -qix 'fr_BE.utf8'; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo localedef -i fr_BE -f UTF-8 fr_BE.UTF-8
fi
