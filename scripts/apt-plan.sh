# Functions shared by the set-up scripts (source this file): read apt's plan before anything is
# changed, and measure what an installation did.

# Reads `apt-get -s install ...` on stdin and prints what the plan does to the machine: packages
# newly installed, upgraded, downgraded and removed, the last three listed by name. Returns 3
# when the plan removes or downgrades anything, else 0.
apt_plan_check() {
  local kind name rest old new line
  local -a added=() upgraded=() downgraded=() removed=()
  # "Inst name [installed version] (new version suite [arch])"; no brackets for a new package.
  local replacing='^\[([^]]+)\] \(([^ ]+)'

  while read -r kind name rest; do
    case "$kind" in
      Remv) removed+=("$name") ;;
      Inst)
        if [[ "$rest" =~ $replacing ]]; then
          old=${BASH_REMATCH[1]}
          new=${BASH_REMATCH[2]}
          if dpkg --compare-versions "$new" lt "$old"; then
            downgraded+=("$name $old -> $new")
          else
            upgraded+=("$name $old -> $new")
          fi
        else
          added+=("$name")
        fi
        ;;
    esac
  done
  echo "apt's plan: ${#added[@]} new, ${#upgraded[@]} upgraded, ${#downgraded[@]} downgraded, ${#removed[@]} removed"
  for line in "${upgraded[@]}"; do echo "  upgrade:   $line"; done
  for line in "${downgraded[@]}"; do echo "  DOWNGRADE: $line"; done
  for line in "${removed[@]}"; do echo "  REMOVE:    $line"; done
  if [ "${#downgraded[@]}" -gt 0 ] || [ "${#removed[@]}" -gt 0 ]; then
    return 3
  fi
  return 0
}

# The installed packages, one a line, sorted.
apt_installed_packages() {
  dpkg-query -W -f '${db:Status-Abbrev} ${binary:Package}\n' | awk '$1 == "ii" {print $2}' | sort
}

# The disk space in use on the root file system, in KiB.
apt_disk_used_kib() {
  df -k --output=used / | tail -n 1 | tr -d ' '
}

# Reports what was installed since `before` (a file from apt_installed_packages) and how much
# disk space was used since `used_before` (KiB): the count of new packages, the sum of their
# installed sizes as dpkg records them, and the growth of the root file system (which also
# counts apt's downloaded archives).
apt_report_installation() {
  local before=$1 used_before=$2 tag=$3
  local -a new
  mapfile -t new < <(comm -13 "$before" <(apt_installed_packages))
  local installed_kib=0 size
  if [ "${#new[@]}" -gt 0 ]; then
    for size in $(dpkg-query -W -f '${Installed-Size}\n' "${new[@]}"); do
      installed_kib=$((installed_kib + size))
    done
  fi
  local grown_kib=$(($(apt_disk_used_kib) - used_before))
  echo "$tag: installed ${#new[@]} packages, $((installed_kib / 1024)) MB by dpkg's sizes; the root file system grew by $((grown_kib / 1024)) MB (apt's downloaded archives included; apt-get clean frees them)"
  if [ "${#new[@]}" -gt 0 ]; then
    echo "$tag: new packages: ${new[*]}"
  fi
}

# Reads the output of `apt-get update` on stdin and prints the architecture of every index it
# failed to fetch ("E: Failed to fetch .../binary-i386/Packages.xz ..."), one a line; a failure
# that is not an architecture's index (a Release file, an unreachable mirror) prints "all".
apt_failed_index_architectures() {
  local line
  while IFS= read -r line; do
    [[ "$line" == "E: Failed to fetch "* ]] || continue
    if [[ "$line" =~ /binary-([a-z0-9]+)/ ]]; then
      echo "${BASH_REMATCH[1]}"
    else
      echo "all"
    fi
  done | sort -u
}

# Returns 0 when every index that `apt-get update` failed to fetch (its output in the file
# `update_log`) belongs to a foreign architecture that none of `packages` (the rest of the
# arguments, as given to apt-get install) asks for; then the lists apt installs from are fresh.
apt_update_failures_spare_packages() {
  local update_log=$1 arch package
  shift
  local native
  native=$(dpkg --print-architecture)
  while read -r arch; do
    [ -n "$arch" ] || continue
    if [ "$arch" = all ] || [ "$arch" = "$native" ]; then return 1; fi
    for package in "$@"; do
      if [[ "$package" == *":$arch" ]]; then return 1; fi
    done
  done < <(apt_failed_index_architectures <"$update_log")
  grep -q "^E: Failed to fetch " "$update_log"
}

# Prints the other installed packages of this machine's architecture built from the same source
# package as `name` at the same version (libbrotli-dev beside libbrotli1), one a line. A -dev
# package asks for its library at exactly its own version, so a library pinned to another
# version takes them along.
apt_installed_siblings() {
  local name=$1 arch source version
  arch=$(dpkg --print-architecture)
  source=$(dpkg-query -W -f '${source:Package}' "$name:$arch" 2>/dev/null) || return 0
  version=$(dpkg-query -W -f '${Version}' "$name:$arch")
  dpkg-query -W -f '${db:Status-Abbrev} ${Package} ${Architecture} ${source:Package} ${Version}\n' |
    awk -v name="$name" -v arch="$arch" -v source="$source" -v version="$version" \
      '$1 == "ii" && $2 != name && $3 == arch && $4 == source && $5 == version {print $2}'
}
