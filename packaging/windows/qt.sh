#!/usr/bin/env bash
# Provides the toolkit for Windows, Qt 5.15.8 for mingw-w64, in a folder.
#
#   qt.sh unpack ARCHIVE FOLDER    takes it from a ready archive with one top folder
#   qt.sh build FOLDER             builds it from Debian's source package (some 20 minutes)
#
# The folder appears in one step, whole, or not at all.
set -euo pipefail

fail() {
    echo "packaging/windows/qt.sh: $*" >&2
    exit 1
}

say() {
    printf '%s  %s\n' "$(date +%H:%M:%S)" "$*"
}

version=5.15.8
source_package=qtbase-opensource-src
jobs=${ZEL_JOBS:-$(nproc)}

# Moves a finished toolkit to where it belongs, in the place of an older one.
# ORIGIN goes into the stamp that marks it as whole.
put_in_place() { # NEW FOLDER ORIGIN
    local part
    for part in bin/moc bin/rcc bin/uic bin/qmake bin/Qt5Core.dll bin/Qt5Gui.dll bin/Qt5Widgets.dll \
        bin/Qt5Test.dll lib/libqtmain.a lib/cmake/Qt5Widgets/Qt5WidgetsConfig.cmake \
        mkspecs/win32-g++/qmake.conf plugins/platforms/qwindows.dll \
        plugins/styles/qwindowsvistastyle.dll licenses/LICENSE.LGPL3; do
        [ -e "$1/$part" ] || fail "the toolkit is not whole: it has no $part; get or build it anew."
    done
    printf '%s\n' "$3" >"$1/.complete"
    rm -rf "$2"
    mv -T "$1" "$2"
}

unpack() { # ARCHIVE FOLDER
    local archive=$1 folder=$2
    [ -f "$archive" ] || fail "there is no archive $archive: name an existing one, or leave --qt away."
    say "unpacking the toolkit from $archive"
    tar -xf "$archive" -C "$scratch" --strip-components=1 --one-top-level=toolkit 2>/dev/null \
        || fail "$archive could not be unpacked: it is damaged or no archive; get it again."
    put_in_place "$scratch/toolkit" "$folder" "archive $(sha256sum "$archive" | cut -d ' ' -f 1)"
}

# The source entries that belong to the machine's own Debian entries, for this script alone: the
# machine's package sources stay as they are.
write_source_entries() { # FOLDER
    local file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -f "$file" ] || continue
        sed -n 's/^deb[[:space:]]\(.*\/debian.*\)/deb-src \1/p' "$file"
    done >"$1/machine.list"
    for file in /etc/apt/sources.list.d/*.sources; do
        [ -f "$file" ] || continue
        # Paragraph by paragraph; comments apart.
        sed '/^#/d' "$file" | awk -v RS= -v ORS='\n\n' '
            /URIs:[^\n]*\/debian/ { sub(/Types:[^\n]*/, "Types: deb-src"); print }'
    done >"$1/machine.sources"
    grep -qs . "$1/machine.list" "$1/machine.sources" \
        || fail "no Debian package source is set up here: name an archive of the toolkit with --qt."
}

fetch_source() { # FOLDER
    mkdir -p "$1/apt/sources" "$1/apt/lists/partial" "$1/apt/cache/archives/partial" "$1/fetched"
    write_source_entries "$1/apt/sources"
    local options=(
        -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$1/apt/sources"
        -o "Dir::State::Lists=$1/apt/lists" -o "Dir::Cache=$1/apt/cache"
        -o APT::Sandbox::User= -o APT::Get::List-Cleanup=false)
    say "fetching the source package $source_package"
    { apt-get "${options[@]}" update \
        && cd "$1/fetched" \
        && apt-get "${options[@]}" source --download-only "$source_package"; } >"$1/fetch.log" 2>&1 \
        || {
            tail -n 5 "$1/fetch.log" >&2
            fail "the source package $source_package could not be fetched: check the network, or name an archive of the toolkit with --qt."
        }
    ls "$1/fetched/${source_package}_$version"+*.dsc >/dev/null 2>&1 \
        || fail "Debian offers another version of $source_package than $version: name an archive of the toolkit with --qt."
    dpkg-source --no-check -x "$1"/fetched/*.dsc "$1/source" >"$1/unpack.log" 2>&1 \
        || fail "the source package could not be unpacked: $(tail -n 1 "$1/unpack.log")"
}

# Runs a long command, its output in a log, with a sign of life every half minute.
with_progress() { # LOG COMMAND...
    local log=$1 started=$SECONDS shown=$SECONDS pid
    shift
    "$@" >"$log" 2>&1 &
    pid=$!
    while kill -0 "$pid" 2>/dev/null; do
        sleep 1
        if [ $((SECONDS - shown)) -ge 30 ]; then
            shown=$SECONDS
            say "    $(grep -c -- ' -o [^ ]*\.o ' "$log" || true) files compiled after $(((SECONDS - started) / 60)) min $(((SECONDS - started) % 60)) s"
        fi
    done
    wait "$pid" || {
        grep -m 3 -i -B 2 -A 2 'error' "$log" >&2 || tail -n 20 "$log" >&2
        return 1
    }
}

# The toolkit asks for x86_64-w64-mingw32-g++, which may be the flavour with the other thread model.
choose_compiler_flavour() { # FOLDER
    local triplet=x86_64-w64-mingw32 tool
    mkdir -p "$1"
    for tool in gcc g++ cpp gcc-ar gcc-nm gcc-ranlib; do
        ln -s "$(command -v "$triplet-$tool-posix")" "$1/$triplet-$tool"
    done
    export PATH=$1:$PATH
}

build() { # FOLDER
    local folder=$1 source=$scratch/source build=$scratch/build prefix=$scratch/toolkit library
    local tool
    for tool in apt-get dpkg-source perl make g++ x86_64-w64-mingw32-g++-posix; do
        command -v "$tool" >/dev/null \
            || fail "$tool is missing, without which the toolkit cannot be built: install the packages dpkg-dev, perl, make, g++ and g++-mingw-w64-x86-64-posix, or name an archive of the toolkit with --qt."
    done
    choose_compiler_flavour "$scratch/compiler"
    fetch_source "$scratch"

    mkdir -p "$build" "$prefix"
    cd "$build"
    say "step 1 of 4: configuring"
    with_progress "$scratch/configure.log" "$source/configure" \
        -prefix "$prefix" -xplatform win32-g++ -device-option CROSS_COMPILE=x86_64-w64-mingw32- \
        -release -shared -opensource -confirm-license -nomake examples -nomake tests \
        -no-opengl -no-dbus -no-openssl -no-feature-sql -no-feature-network \
        -no-feature-concurrent -no-feature-xml -no-feature-tabletevent \
        -qt-zlib -qt-pcre -qt-libpng -qt-freetype -qt-harfbuzz -no-pch \
        || fail "the toolkit could not be configured; the lines above say why."

    local targets=(sub-widgets sub-testlib sub-winmain sub-plugins)
    say "step 2 of 4: building the host tools and the libraries (about 1250 files)"
    with_progress "$scratch/make.log" sh -c \
        'make sub-src-qmake_all && make -C src -j"$@"' sh "$jobs" "${targets[@]}" \
        || fail "the toolkit could not be built; the lines above say why."

    say "step 3 of 4: installing"
    local installs=()
    for library in bootstrap moc rcc uic qtzlib corelib gui widgets testlib winmain \
        platformsupport printsupport plugins; do
        grep -q "^sub-$library-install_subtargets:" src/Makefile && installs+=("sub-$library-install_subtargets")
    done
    with_progress "$scratch/install.log" make -C src "${installs[@]}" \
        || fail "the toolkit could not be installed; the lines above say why."

    say "step 4 of 4: completing what the CMake packages ask for"
    mkdir -p "$prefix/bin" "$prefix/licenses"
    cp -a "$build/bin/qmake" "$prefix/bin/"
    cp -a "$source/mkspecs" "$prefix/"
    cp -a "$build/mkspecs/." "$prefix/mkspecs/"
    cp "$source"/LICENSE.*GPL* "$prefix/licenses/"
    cd /
    put_in_place "$prefix" "$folder" "the source package $(basename "$scratch"/fetched/*.dsc)"
}

[ $# -ge 2 ] || fail "say 'unpack ARCHIVE FOLDER' or 'build FOLDER'."
command=$1
folder=$(realpath -m "${@: -1}")
mkdir -p "$(dirname "$folder")"
# Beside the folder, so that the last step is a rename.
scratch=$(mktemp -d "$(dirname "$folder")/.toolkit-XXXXXX")
trap 'rm -rf "$scratch"' EXIT
trap 'exit 1' HUP INT TERM
case "$command" in
    unpack) unpack "$(realpath -m "$2")" "$folder" ;;
    build) build "$folder" ;;
    *) fail "say 'unpack ARCHIVE FOLDER' or 'build FOLDER'." ;;
esac
say "the toolkit is in $folder"
