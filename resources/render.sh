#!/usr/bin/env bash
# Renders the icons from their drawn sources: the images of the resource collection, the icon files
# for Windows and the icon theme's images for the Linux desktop. The same sources always give the
# same bytes.
#
#   render.sh [FOLDER]
#
# Writes into FOLDER (default: the folder of this script). Needs rsvg-convert and icotool.
set -eu

source=$(cd "$(dirname "$0")" && pwd)/svg
target=${1:-$(dirname "$source")}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# render DRAWING SIZE IMAGE
render() {
    mkdir -p "$(dirname "$3")"
    rsvg-convert --width "$2" --height "$2" --output "$3" "$source/$1.svg"
}

# Each image is scaled down where it is shown, so its size is a common multiple of the sizes that it
# has there at 96, 144 and 192 dots per inch: edges that lie on the drawn grid stay sharp.
for name in New OpenFile SaveAs QtLogo Add AddHover Delete DeleteInactive SortUp SortDown \
    OpenFolder; do
    render "$name" 96 "$target/png/$name.png"
done
for name in InfoExpanded InfoExpandedHover InfoCollapsed InfoCollapsedHover; do
    render "$name" 150 "$target/png/$name.png"
done
render ZelFile 256 "$target/png/ZelFile.png"

# The largest image of an icon file is stored as PNG, the others as bitmaps.
for name in ZelFile ZelDocument; do
    images=()
    for size in 16 20 24 32 40 48 64 128; do
        render "$name" "$size" "$scratch/$name-$size.png"
        images+=("$scratch/$name-$size.png")
    done
    render "$name" 256 "$scratch/$name-256.png"
    icotool --create --output="$target/$name.ico" "${images[@]}" --raw="$scratch/$name-256.png"
done

for size in 16 22 24 32 48 64 128 256; do
    folder=$target/hicolor/${size}x$size
    render ZelFile "$size" "$folder/apps/com.halvorn.ZelFileCreator.png"
    render ZelDocument "$size" "$folder/mimetypes/application-vnd.halvorn.zel.png"
done
