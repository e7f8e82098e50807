// The kinds of items, for a cross-compiler whose package lacks the header.
#pragma once

enum vtype { VNON, VREG, VDIR, VBLK, VCHR, VLNK, VSOCK, VFIFO, VBAD, VSTR, VCPLX };
