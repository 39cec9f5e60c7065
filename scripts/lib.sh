# Sourced by the commands of this folder: where things are, and how Debian packages get onto the machine.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
out=$root/out
wine=/usr/lib/wine/wine64
program='QX Installation Assistant.exe'
jobs=${JOBS:-2}

# What each group of work needs, as Debian packages.
declare -A package_groups=(
  [build]='g++ cmake ninja-build git g++-mingw-w64-i686-win32 g++-mingw-w64-x86-64-win32 libgtest-dev
    nlohmann-json3-dev libmsi-dev libglib2.0-dev pkg-config'
  [media]='wixl msitools nsis gcc-mingw-w64-i686-win32 gcc-mingw-w64-x86-64-win32'
  [wine]='wine64 fonts-wine xvfb xauth xdotool python3'
  [tests]='libgtest-dev python3 python3-jsonschema'
  [bench]='libbenchmark-dev python3'
  [lint]='clang-format clang-tidy ansible-lint faketime python3 g++-mingw-w64-i686-posix'
  [shots]='imagemagick chromium fonts-liberation fonts-dejavu-core'
  [release]='pandoc faketime'
  [sanitizers]='clang libclang-rt-14-dev'
)

say() { printf '%s\n' "$*"; }
step() { printf '== %s\n' "$*"; }
die() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; exit 1; }

# The packages of the named groups that are not on the machine yet, each once.
missing_packages() {
  local group package
  for group in "$@"; do
    [[ -v package_groups[$group] ]] || die "no such group: $group (there are: ${!package_groups[*]})"
    for package in ${package_groups[$group]}; do
      dpkg-query -W -f '${Status}\n' "$package" 2>/dev/null | grep -qx 'install ok installed' || say "$package"
    done
  done | sort -u
}

as_root() { if ((EUID)); then sudo "$@"; else "$@"; fi; }

apt() { as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Dpkg::Use-Pty=0 "$@"; }

codename() { (. /etc/os-release && say "$VERSION_CODENAME"); }

# The line of a source list for one suite of the machine's own mirror and one kind of processor.
suite_line() {
  local mirror keyring=/usr/share/keyrings/debian-archive-keyring.gpg
  mirror=$(grep -rhoE 'https?://[^ ]+/debian/?( |$)' /etc/apt/sources.list* 2>/dev/null | head -n 1 | tr -d ' ') || true
  [[ $mirror ]] || return 1
  say "deb [arch=$2$([[ ! -e $keyring ]] || say " signed-by=$keyring")] $mirror $1 main"
}

# Installs packages; where an index of the machine's mirror fails, with the main suite alone.
install_packages() {
  if apt update && apt install --no-install-recommends "$@"; then return; fi
  step 'an index failed: trying the main suite alone'
  local lists
  lists=$(mktemp -d) && chmod 755 "$lists" && mkdir "$lists/partial"
  suite_line "$(codename)" "$(dpkg --print-architecture)" >"$lists/main.list" || die 'no Debian mirror is named in /etc/apt: please install by hand: '"$*"
  local only=(-o Dir::Etc::sourcelist="$lists/main.list" -o Dir::Etc::sourceparts=- -o Dir::State::Lists="$lists"
    -o APT::Sandbox::User=root)
  apt "${only[@]}" update && apt "${only[@]}" install --no-install-recommends "$@"
}

# Puts the packages of the named groups onto the machine; quick when they are there.
need() {
  local packages
  mapfile -t packages < <(missing_packages "$@")
  ((${#packages[@]})) || return 0
  step "installing ${packages[*]}"
  install_packages "${packages[@]}" || die "could not install: ${packages[*]}"
}

have_wine() { [[ -x $wine ]]; }
