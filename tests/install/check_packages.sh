#!/bin/sh
# usage: check_packages.sh BUILD_FOLDER SOURCE_FOLDER SCRATCH_FOLDER LIBDIR
# Builds the Debian packages and looks into them; unpacks them and runs programs from there; runs the drop-in's
# scripts on alternatives of a scratch root. Where overlay mounts are allowed (root), also installs all four with
# dpkg over a throw-away copy of this system, uses them, and removes them. Exit 77: no dpkg tools.
set -eu
build=$1; source=$2; scratch=$3/packages; libdir=$4
command -v dpkg-deb dpkg-shlibdeps > /dev/null || { echo "dpkg-dev is not installed"; exit 77; }
fail() { echo "$1"; exit 1; }
multiarch=$(cc -print-multiarch)
rm -rf "$scratch"; mkdir -p "$scratch/debs" "$scratch/root" "$scratch/control"; cd "$scratch"
# gzip: nobody keeps these packages
(cd debs && cpack --config "$build/CPackConfig.cmake" -D CPACK_DEBIAN_COMPRESSION_TYPE=gzip > ../cpack.log 2>&1) ||
  { cat cpack.log; fail "cpack fails"; }

# field PACKAGE FIELD PATTERN: the field matches
field() {
  dpkg-deb -f debs/"$1"_*.deb "$2" | grep -qE -- "$3" || fail "$1: $2 lacks $3: $(dpkg-deb -f debs/"$1"_*.deb "$2")"
}
version=$("$build/cli/qel" --version | cut -d' ' -f2)-1
for needed in 'libc6 \(>=' libgomp1 libmetis5 'libstdc\+\+6'; do field libqel1 Depends "$needed"; done
field libqel-dev Depends "libqel1 \(= $version\)"
field libqel-dev Depends libmetis-dev
field qel-tools Depends "libqel1 \(= $version\)"
field qel-tools Depends libmuparser
field libqel-drop-in Depends libgomp1
field libqel-drop-in Provides 'libblas\.so\.3, liblapack\.so\.3'
for package in libqel1 libqel-dev qel-tools libqel-drop-in; do
  dpkg-deb -x debs/${package}_*.deb root
  dpkg-deb -e debs/${package}_*.deb control/$package
  [ -s root/usr/share/doc/$package/copyright ] || fail "$package: no copyright"
done
[ "$(cat control/libqel1/shlibs)" = "libqel 1 libqel1 (>= ${version%-*})" ] || fail "libqel1: shlibs"
[ ! -e control/libqel-drop-in/shlibs ] || fail "libqel-drop-in: programs must not depend on it by name"
grep -q ldconfig control/libqel1/postinst || fail "libqel1: the loader's cache is not renewed"
grep -q ldconfig control/libqel-drop-in/triggers || fail "libqel-drop-in: the loader's cache is not renewed"

# from where they were unpacked
LD_LIBRARY_PATH=root/usr/$libdir root/usr/bin/qel info | grep -q '^processor\|level' || fail "qel info"
root/usr/bin/qel solve "$source/examples/data/494_bus.mtx.gz" > qel.log || fail "qel solve"
PKG_CONFIG_PATH=root/usr/$libdir/pkgconfig pkg-config --exists qel qel-static || fail "pkg-config"

# the scripts, on alternatives of their own
names="libblas.so.3 liblapack.so.3"
mkdir -p root/var/lib/dpkg/alternatives root/etc/alternatives root/var/log
other=root/usr/lib/$multiarch/other; mkdir -p "$other"
for name in $names; do touch "$other/$name"; done
alternatives() { DPKG_ROOT=$scratch/root DPKG_ADMINDIR=$scratch/root/var/lib/dpkg "$@" > alternatives.log 2>&1 || { cat alternatives.log; fail "$*"; }; }
for name in $names; do
  alternatives update-alternatives --install /usr/lib/$multiarch/$name $name-$multiarch /usr/lib/$multiarch/other/$name 100
done
chosen() { for name in $names; do readlink root/etc/alternatives/$name-$multiarch; done | sort | tr '\n' ' '; }
ours="/usr/$libdir/qel-drop-in/libblas.so.3 /usr/$libdir/qel-drop-in/liblapack.so.3 "
theirs="/usr/lib/$multiarch/other/libblas.so.3 /usr/lib/$multiarch/other/liblapack.so.3 "
alternatives control/libqel-drop-in/postinst configure
[ "$(chosen)" = "$ours" ] || fail "postinst configure: $(chosen)"
alternatives control/libqel-drop-in/postinst configure 0.9    # as an upgrade does
alternatives control/libqel-drop-in/prerm upgrade 1.1
[ "$(chosen)" = "$ours" ] || fail "an upgrade takes the drop-ins away: $(chosen)"
alternatives control/libqel-drop-in/prerm remove
[ "$(chosen)" = "$theirs" ] || fail "prerm remove: $(chosen)"

# for real, over a copy of this system that vanishes with the mounts
if ! unshare -m sh -c "mount -t tmpfs qel '$scratch/root' && mkdir '$scratch/root/u' '$scratch/root/w' &&
     mount -t overlay qel -o 'lowerdir=/,upperdir=$scratch/root/u,workdir=$scratch/root/w' '$scratch/root'" 2> /dev/null; then
  echo "no overlay mounts here: not installed with dpkg"
  exit 0
fi
cat > inside.sh <<'INSIDE'
set -eu
multiarch=$1 libdir=$2
cd /qel-packages
dpkg -i ./*.deb > dpkg.log 2>&1 || { cat dpkg.log; exit 1; }
for name in libblas.so.3 liblapack.so.3; do
  [ "$(realpath /usr/lib/$multiarch/$name)" = "/usr/$libdir/qel-drop-in/$name" ] || { echo "$name is not taken"; exit 1; }
done
! ldconfig -p | grep -q 'libqel.so.1 .*not' && ldconfig -p | grep -q libqel.so.1 || { echo "libqel.so.1 is not in the cache"; exit 1; }
cc solve.c $(pkg-config --cflags --libs qel) -o solve
[ "$(./solve)" = right ] || { echo "the program is wrong"; exit 1; }
c++ -std=c++20 facade.cpp $(pkg-config --cflags --libs qel-static) -o facade
[ "$(./facade)" = right ] || { echo "the C++ program is wrong"; exit 1; }
qel --version > /dev/null
if [ -x /usr/lib/$multiarch/blas/xblat1d ]; then
  ldd /usr/lib/$multiarch/blas/xblat1d | grep -q libblas.so.3
  /usr/lib/$multiarch/blas/xblat1d > blas.log && ! grep FAIL blas.log
fi
dpkg --verify libqel1 libqel-dev qel-tools libqel-drop-in > verify.log; ! grep '^..5' verify.log
dpkg -r libqel-drop-in qel-tools libqel-dev libqel1 > dpkg.log 2>&1 || { cat dpkg.log; exit 1; }
[ "$(realpath -q /usr/lib/$multiarch/libblas.so.3)" != "/usr/$libdir/qel-drop-in/libblas.so.3" ]
[ ! -e /usr/$libdir/libqel.so.1 ] && [ ! -e /usr/bin/qel ] || { echo "files are left"; exit 1; }
echo "installed, used and removed with dpkg"
INSIDE
mkdir mounts
unshare -m sh -eu -c '
  cd "$1"; mount -t tmpfs qel mounts; mkdir mounts/upper mounts/work mounts/root
  mount -t overlay qel -o "lowerdir=/,upperdir=mounts/upper,workdir=mounts/work" mounts/root
  mount -t proc proc mounts/root/proc; mount --rbind /dev mounts/root/dev
  mkdir mounts/root/qel-packages; cp debs/*.deb inside.sh "$2"/solve.c "$2"/facade.cpp mounts/root/qel-packages
  exec env -u LD_LIBRARY_PATH chroot mounts/root sh /qel-packages/inside.sh "$3" "$4"
' sh "$scratch" "$source/tests/install/user" "$multiarch" "$libdir" || fail "not right as installed packages"
