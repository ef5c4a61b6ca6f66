# For scripts that need a fresh root of Debian 12, for root alone. Mounts are in a namespace of the
# script's own, so that none outlives it, however it ends.

# Runs the script again in that namespace: in_own_namespace "$0" "$@"
in_own_namespace() {
  [ "$(id -u)" -eq 0 ] || { echo "$1: a root of Debian is made by root alone; run it as root" >&2; exit 2; }
  [ -n "${CHANNELSTRIP_OWN_NAMESPACE:-}" ] ||
    CHANNELSTRIP_OWN_NAMESPACE=yes exec unshare --mount --propagation private -- "$@"
}

# Debian's sources as this machine's apt has them: a line for each.
debian_sources() {
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' "Architecture: $(dpkg --print-architecture)" | sort -u
}

# make_root FOLDER: Debian 12 with apt, and nothing else that isn't required.
make_root() {
  local root=$1 mirror
  mirror=$(debian_sources | awk '$3 == "bookworm" { print $2; exit }')
  [ -n "$mirror" ] || { echo "apt has no source of Debian 12 (bookworm)" >&2; return 1; }
  debootstrap --variant=minbase --include=ca-certificates bookworm "$root" "$mirror" >"$root.log" 2>&1 ||
    { tail -20 "$root.log" >&2; return 1; }
  debian_sources >"$root/etc/apt/sources.list"
  apt-config dump | grep -iE '^Acquire::https?::Proxy' >"$root/etc/apt/apt.conf.d/80proxy" || true
  printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # no service starts
  chmod +x "$root/usr/sbin/policy-rc.d"
  mount -t proc proc "$root/proc"
  chroot "$root" apt-get -qq update
}

# remove_root FOLDER, made or half made.
remove_root() {
  if mountpoint -q "$1/proc"; then umount --lazy "$1/proc"; fi
  rm -rf --one-file-system "$1" "$1.log"
}
