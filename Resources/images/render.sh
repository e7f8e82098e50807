#!/bin/sh
# Draws the pictures of the resources anew from their sources beside this script. Needed only when a source has changed;
# the pictures are kept, so that a build needs no renderer. Needs rsvg-convert (package librsvg2-bin) and python3.
set -eu
cd "$(dirname "$0")"
draw() { rsvg-convert --width "$3" --height "$3" --output "$2" "$1.svg"; }
draw AlertStopIcon ../AlertStopIcon.png 64
draw AlertStopIcon ../AlertStopIcon@2x.png 128
draw AlertStopIcon ../AlertStopIcon@3x.png 192
draw Checkmark ../Checkmark.png 24
draw Checkmark ../Checkmark@2x.png 48
draw Checkmark ../Checkmark@3x.png 72
draw GenericApplication ../GenericApplication.png 128
draw GenericApplication ../GenericApplication@2x.png 256
draw GenericApplication ../GenericApplication@3x.png 384
sizes=$(mktemp -d)
for side in 16 32 64 128 256 512; do draw HalvornInstaller "$sizes/$side.png" "$side"; done
python3 - "$sizes" ../HalvornInstaller.icns <<'END'
import struct, sys
kinds = {"icp4": 16, "icp5": 32, "icp6": 64, "ic07": 128, "ic08": 256, "ic09": 512}
body = b""
for kind, side in kinds.items():
    picture = open(f"{sys.argv[1]}/{side}.png", "rb").read()
    body += kind.encode() + struct.pack(">I", len(picture) + 8) + picture
open(sys.argv[2], "wb").write(b"icns" + struct.pack(">I", len(body) + 8) + body)
END
rm -r "$sizes"
