#!/bin/bash
# Builds the Debian package from the build folder, unpacks it and checks what
# it holds, runs both programs from where it put them, and asks lintian.
#   PackageTest.sh BUILD_DIR VERSION APP_ID
set -euo pipefail
build=$1 version=$2 app_id=$3

for tool in dpkg-deb dpkg-shlibdeps file; do
    if ! command -v $tool >/dev/null; then
        echo "$tool is not installed: skipped"
        exit 0
    fi
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$*"
    exit 1
}

cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/out" >"$work/cpack.log" 2>&1 ||
    fail "cpack failed: $(cat "$work/cpack.log")"
deb=$work/out/vantorel_${version}_$(dpkg --print-architecture).deb
[[ -f $deb ]] || fail "no $(basename "$deb"): $(ls "$work/out")"

# The control fields: the libraries from dpkg-shlibdeps, Qt's platform plugins.
depends=$(dpkg-deb -f "$deb" Depends)
for needed in libc6 libstdc++6 libpcre2-8-0 libqt6core6 libqt6widgets6 qt6-qpa-plugins; do
    [[ $depends == *"$needed"* ]] || fail "Depends lacks $needed: $depends"
done
[[ $(dpkg-deb -f "$deb" Version) == "$version" ]] || fail "the package's version is not $version"
description=$(dpkg-deb -f "$deb" Description)
[[ $(wc -l <<<"$description") -gt 3 ]] || fail "no long description: $description"

root=$work/root
dpkg-deb -x "$deb" "$root"
for file in usr/bin/vantorel usr/bin/vantorel-cli \
    usr/share/vantorel/intro.rtf usr/share/vantorel/readme.html \
    usr/share/applications/$app_id.desktop usr/share/icons/hicolor/scalable/apps/$app_id.svg \
    usr/share/metainfo/$app_id.metainfo.xml \
    usr/share/man/man1/vantorel.1.gz usr/share/man/man1/vantorel-cli.1.gz \
    usr/share/bash-completion/completions/vantorel-cli \
    usr/share/doc/vantorel/copyright usr/share/doc/vantorel/changelog.gz; do
    [[ -f $root/$file ]] || fail "not in the package: /$file"
done
zcat "$root/usr/share/doc/vantorel/changelog.gz" | head -1 | grep -q "^vantorel ($version) " ||
    fail "the changelog does not start with $version"

# Both programs run from where the package put them.
export VANTOREL_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data XDG_STATE_HOME=$work/state
for program in vantorel vantorel-cli; do
    out=$("$root/usr/bin/$program" --version) || fail "$program --version failed"
    [[ $out == "$program (Vantorel) $version" ]] || fail "$program --version says: $out"
done
out=$("$root/usr/bin/vantorel-cli" -d "$root/usr/share/vantorel" -f readme.html find Vantorel) ||
    fail "vantorel-cli did not run: $out"
[[ $out == *"1 files processed"* ]] || fail "vantorel-cli found nothing: $out"
# The window starts on Qt's offscreen platform, and a request to end closes it
# as the user would, saving its settings.
status=0
QT_QPA_PLATFORM=offscreen timeout --preserve-status -s TERM 5 "$root/usr/bin/vantorel" "$work" \
    >"$work/window.log" 2>&1 || status=$?
[[ $status -eq 0 && -f $work/config/settings.reg ]] ||
    fail "the window did not start and close (status $status): $(cat "$work/window.log")"

if ! command -v lintian >/dev/null; then
    echo "lintian is not installed: the package was not checked by it"
    exit 0
fi
lintian --fail-on error,warning "$deb" >"$work/lintian.log" 2>&1 || fail "lintian: $(cat "$work/lintian.log")"
cat "$work/lintian.log"
echo "package $(basename "$deb") checked"
