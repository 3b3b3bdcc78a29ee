# Installs what is missing on a plain Debian 12, and nothing where all is there: then no network is touched.
# shellcheck shell=bash

packages_build=(
    ca-certificates ccache cmake g++ libbenchmark-dev libglib2.0-bin libglib2.0-dev libglib2.0-dev-bin
    libgmock-dev libgstreamer-plugins-base1.0-dev libgstreamer1.0-dev libgtest-dev libgtk-3-dev
    libjavascriptcoregtk-4.1-dev libwebkit2gtk-4.1-dev ninja-build nlohmann-json3-dev pkg-config
)
packages_run=(
    dbus fonts-dejavu-core gnuplot-nox gstreamer1.0-libav gstreamer1.0-plugins-bad gstreamer1.0-plugins-base
    gstreamer1.0-plugins-good gstreamer1.0-tools imagemagick openssl python3-gi python3-selenium webkit2gtk-driver
    weston xauth xdotool xvfb
)

# A Node that the machine already has is used, wherever it comes from: Debian's own npm package cannot be
# installed beside another vendor's nodejs.
node_is_good_enough() {
    local version
    version=$(node -p 'process.versions.node.split(".")[0]' 2>/dev/null) || return 1
    ((version >= 18))
}

is_installed() { # package
    dpkg-query -W -f '${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed
}

as_root() { # command...
    if ((EUID == 0)); then
        "$@"
    elif ! command -v sudo >/dev/null; then
        return 126
    elif sudo -n true 2>/dev/null; then
        sudo -n "$@"
    elif [[ -t 2 ]]; then
        sudo "$@" </dev/tty
    else
        return 126
    fi
}

apt_get() { # arguments of apt-get
    as_root env DEBIAN_FRONTEND=noninteractive NEEDRESTART_SUSPEND=1 \
        apt-get -q -y -o DPkg::Lock::Timeout=900 -o Acquire::Retries=3 "$@"
}

install_packages() { # further packages...
    local package missing=()
    if ! command -v dpkg-query >/dev/null; then
        stage "Not a Debian system: taking it that the packages listed in CONTRIBUTING.md are there"
        return
    fi
    for package in "${packages_build[@]}" "${packages_run[@]}" "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    node_is_good_enough || missing+=(nodejs)
    command -v npm >/dev/null || missing+=(npm)
    ((${#missing[@]})) || return 0

    if ((EUID != 0)) && ! sudo -n true 2>/dev/null && [[ ! -t 2 ]]; then
        fail "packages are missing and there is neither root nor sudo without a password. Run this once as root:
         apt-get install --no-install-recommends ${missing[*]}"
    fi
    logged apt-update "Refreshing the package lists" apt_get update
    logged apt-install "Installing ${#missing[@]} packages: ${missing[*]}" \
        apt_get install --no-install-recommends "${missing[@]}"
}

# One `npm ci` for each lock file of the tree, again only when the lock file or Node's major version has changed.
install_node_modules() {
    local lock folder stamp wanted
    while IFS= read -r lock; do
        folder=$(dirname -- "$lock")
        stamp=$folder/node_modules/.installed-from
        wanted="$(sha256sum <"$lock" | cut -d ' ' -f 1) node $(node -p 'process.versions.node.split(".")[0]')"
        [[ -f $stamp && $(<"$stamp") == "$wanted" ]] && continue
        logged npm-ci "Installing the Node packages of ${lock#"$root"/}" \
            npm --prefix "$folder" ci --ignore-scripts --no-audit --no-fund --loglevel=error
        mkdir -p -- "$folder/node_modules"
        printf '%s' "$wanted" >"$stamp"
    done < <(find "$root" \( -name node_modules -o -name build -o -name .git \) -prune -o \
        -name package-lock.json -print)
}

set_up() { # further packages...
    install_packages "$@"
    node_is_good_enough || fail "Node 18 or newer is needed; found: $(node --version 2>&1 || true)"
    install_node_modules
}
