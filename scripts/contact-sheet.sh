#!/usr/bin/env bash
# Draws all states of the launcher in several sizes, resolutions and all themes, with real and made-up icons, and arranges
# the pictures on sheets to look at:
#   scripts/contact-sheet.sh [FOLDER]        (build/contact-sheet)
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

into=${1:-build/contact-sheet}
applications=/usr/share/icons/Papirus/64x64/apps
chosen=(firefox gimp inkscape blender audacity vlc krita calibre thunderbird libreoffice-writer libreoffice-calc
    gnome-terminal accessories-calculator accessories-text-editor system-file-manager kdenlive obs scribus darktable
    handbrake rhythmbox shotwell simple-scan gparted virt-manager transmission filezilla keepassxc anki musescore ardour
    stellarium marble kalzium gnome-chess gnome-mines wesnoth supertuxkart 0ad openttd freeciv minetest steam lutris
    retroarch vscodium emacs gvim geany meld wireshark putty remmina evince okular gwenview ark kate konsole dolphin
    spectacle elisa falkon konversation kmail korganizer akregator clementine audacious pitivi openshot)

scripts/setup.sh run screenless test measure
cmake --preset release -DAMBERQUILL_TESTS=ON >/dev/null
cmake --build --preset release -- --quiet view_pictures

icons=$(mktemp -d)
trap 'rm -rf "$icons"' EXIT
for name in "${chosen[@]}"; do
    if [[ -e $applications/$name.svg ]]; then
        cp -L "$applications/$name.svg" "$icons/"
    fi
done

# One sheet of all pictures of a folder. Each is shrunk first: together they would be too large.
sheet() {
    local small picture
    small=$(mktemp -d)
    for picture in "$1"/*.png; do
        convert "$picture" -resize 640x "$small/${picture##*/}"
    done
    montage -label '%t' "$small"/*.png -tile 4x -geometry +6+6 "$1.png"
    rm -r "$small"
}

export QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES='*=false'
for kind in real made-up; do
    source=$([[ $kind == real ]] && echo "$icons" || echo made-up)
    for size in 1280x800 1920x1080 2560x1440; do
        for ratio in 1 2; do
            folder=$into/$kind/$size@$ratio
            QT_SCALE_FACTOR=$ratio build/release/tests/view_pictures --size "$size" --icons "$source" "$folder"
            sheet "$folder"
        done
    done
    for theme in blue purple green; do
        build/release/tests/view_pictures --theme "$theme" --icons "$source" --state page --state folder --state search \
            "$into/$kind/$theme"
        sheet "$into/$kind/$theme"
    done
done
printf 'Sheets: %s\n' "$(realpath "$into")/*/*.png"
