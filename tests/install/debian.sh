#!/bin/sh
# Makes the Debian package, looks at what it needs and holds, and runs the tool from it:
# debian.sh <build folder> <folder to work in>
set -eu
build=$1 work=$2

rm -rf "$work"
mkdir -p "$work/root"
cd "$build"
cpack -G DEB -B "$work" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
package=$(ls "$work"/tessarine_*.deb)

needs=$(dpkg-deb -f "$package" Depends)
for needed in libc6 libqt5core5a libqt5sql5 libqt5sql5-sqlite libqt5xml5 libsqlite3-0 libstdc++6; do
    case ", $needs," in
    *", $needed,"* | *", $needed ("*) ;;
    *) echo "the package does not depend on $needed but on $needs"; exit 1 ;;
    esac
done

dpkg-deb -x "$package" "$work/root"
for file in share/man/man1/tessarine.1.gz share/bash-completion/completions/tessarine \
    share/tessarine/tessarine.schema.json share/cmake/Tessarine/TessarineConfig.cmake share/doc/tessarine/README.md share/doc/tessarine/docs/settings.md \
    share/doc/tessarine/docs/projects.md share/doc/tessarine/docs/project-yaml-keys.md \
    share/doc/tessarine/examples/empty/empty.tsrt; do
    [ -f "$work/root/usr/$file" ] || { echo "the package lacks $file"; exit 1; }
done
"$work/root/usr/bin/tessarine" -schema | cmp - "$work/root/usr/share/tessarine/tessarine.schema.json"
gzip -dc "$work/root/usr/share/man/man1/tessarine.1.gz" | grep -q 'TH TESSARINE'
cp -R "$work/root/usr/share/doc/tessarine/examples/pump" "$work/pump"
"$work/root/usr/bin/tessarine" -project "$work/pump/pump.tsrt" >"$work/log"
[ -s "$work/pump/gen_objdict.c" ]
