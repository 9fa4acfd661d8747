# shellcheck shell=bash
# Sourced by run.sh and test.sh, which stand at the top of the tree and have gone there.

# Prints the packages of the given sections of debian-packages.txt.
packages_of() {
    local section
    for section in "$@"; do
        sed -n "/^\[$section\]\$/,/^\[/{/^[a-z0-9]/p}" packaging/debian-packages.txt
    done
}

# Prints those of the given packages that are not installed.
missing_packages() {
    comm -23 <(printf '%s\n' "$@" | sort -u) \
        <(dpkg-query --show --showformat '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null |
            sed -n 's/ installed$//p' | sort -u)
}

as_administrator() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Installing packages needs root or sudo. Run as root: $*" >&2
        return 1
    fi
}

# Installs what is missing of the given sections. Calls nothing but dpkg-query when all is there.
install_packages() {
    local packages missing
    mapfile -t packages < <(packages_of "$@")
    mapfile -t missing < <(missing_packages "${packages[@]}")
    [ ${#missing[@]} -gt 0 ] || return 0

    echo "Installing from Debian: ${missing[*]}"
    as_administrator apt-get update --quiet
    as_administrator env DEBIAN_FRONTEND=noninteractive \
        apt-get install --quiet --yes --no-install-recommends "${missing[@]}"
}
