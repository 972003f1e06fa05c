#!/usr/bin/python3
"""Generates the music font "Tormaven_Corrieval4" from LilyPond's Emmentaler outlines.

Run with Debian's /usr/bin/python3, which has the fontforge module:

    make_music_font.py --emmentaler /usr/share/lilypond/<version>/fonts/otf/emmentaler-20.otf OUT.otf

Every symbol of the score is one character of this font, drawn by fitting it to a box (see
notation/ScoChar.cpp): the em is 4.2 times the box height, the advance is centred on the box centre
and the line (ascent + descent) is centred on it vertically. The drawing code of each caller fixes
its box, so each glyph is scaled and shifted here so that, in the box its caller gives it, the
symbol lands where engraved music has it.

Conventions below: positions are in stave units u below the top of the stave's music box (the
five lines at 5, 7, 9, 11 and 13u, a stave gap is 2u); heights above a box centre are in u,
positive upwards. Ascent and descent are equal, so the baseline is the box centre.
"""

import argparse
import contextlib
import glob
import math
import os
import sys

# Timestamps of the generated tables come from here, so that every run gives the same bytes.
os.environ["SOURCE_DATE_EPOCH"] = "0"


@contextlib.contextmanager
def quiet_stderr():
    """FontForge reports where it is installed and which of Emmentaler's tables (LilyPond's own)
    it skips; neither needs acting on, so the build log is spared them. Failures still raise."""
    saved = os.dup(2)
    with open(os.devnull, "w") as null:
        os.dup2(null.fileno(), 2)
    try:
        yield
    finally:
        os.dup2(saved, 2)
        os.close(saved)


with quiet_stderr():
    import fontforge
    import psMat

FAMILY = "Tormaven_Corrieval4"
UPM = 2100  # 4.2 * 500: a stave gap of a note's box is 500 units
HALF_LINE = UPM // 2
EMM_SPACE = 250.0  # a stave gap in Emmentaler-20 units
EMM_STEM = 32.0  # stem thickness, 0.13 of a gap as LilyPond engraves it


class Frame:
    """How a caller's box meets the stave: the box height and where the glyph's reference point
    (a head's centre, the clef's line, a digit's middle) must land, relative to the box centre."""

    def __init__(self, box_u, ref_above_centre_u):
        self.unit = UPM / (4.2 * box_u)  # font units per stave unit
        self.ref_y = ref_above_centre_u * self.unit

    def emm(self, size=1.0):
        """Font units per Emmentaler unit, for a symbol `size` times its engraved size."""
        return size * 2 * self.unit / EMM_SPACE


# Single notes (CNoteEx::Draw): the box is (left, p*u - 0.5u, width, 2u), so its centre is
# half a unit below position p, where the head belongs.
NOTE = Frame(2.0, 0.5)

# Gracenote heads of a movement (CNoteEx::AddGraceHead, durations 64 and 256): the box starts at
# (p - 2)u, is moved down 0.4 gap and is 0.75 gap high, centre (p - 0.45)u; the group draws
# stems and ledger lines to the head's mid height p*u, 0.45u above that centre.
GRACE_BOX = 0.75 * 2
GRACE = Frame(GRACE_BOX, (-2 + 0.4 * 2 + GRACE_BOX / 2))

GRACE_SIZE = 0.6  # gracenote heads are 0.6 of a melody head, as pipe music engraves them


def clef_frame(shift, line):
    # The stave gives the clef the rectangle (X, Y + 4u, H / 3.8, 0.7H) with H = 19u; the clef
    # draws in a box one "gap" of its own high, 2 * 0.7H / 19 = 1.4u, moved down gap / 2.1 * shift.
    gap = 2 * 0.7 * 19 / 19
    centre = 4 + gap / 2.1 * shift + gap / 2
    return Frame(gap, centre - line)


TREBLE = clef_frame(9, 11)  # the curl sits on the G line, position 11
BASS = clef_frame(2, 7)  # the dots stand either side of the F line, position 7


def key_frame():
    # The key signature's rectangle is 1.7H = 32.3u high from the stave top; its gap is
    # 2 * 32.3u / 19 = 3.4u, its step gap / 1.9, and each sharp's box is 0.65 gap high. The
    # first box starts 2 steps + gap / 5 down and belongs on F (5), the second 4 steps down on
    # C (8). One glyph serves both, so it takes the mean of the two offsets: each sharp is then
    # 0.05u (a fortieth of a gap) from its line or space.
    gap = 2 * 1.7 * 19 / 19
    step = gap / 1.9
    box = gap * 0.65
    first = 2 * step + gap / 5 + box / 2 - 5
    second = 4 * step + box / 2 - 8
    return Frame(box, (first + second) / 2)


SHARP = key_frame()

# Time signature digits: boxes g = 2u / 1.8 high with tops at 7.5u and 11.5u; each digit is two
# gaps high and centred in its half of the stave, at 7u and 11u, that is 0.5u + g / 2 above the
# box centre.
DIGIT_BOX = 2 / 1.8
DIGIT = Frame(DIGIT_BOX, 0.5 + DIGIT_BOX / 2)

# Common and cut time: a box 1.2g high whose top is 7.5u + g / 2.5; the symbol centres on the
# middle line, 9u.
SYMBOL_BOX = 1.2 * DIGIT_BOX
SYMBOL = Frame(SYMBOL_BOX, 7.5 + DIGIT_BOX / 2.5 + SYMBOL_BOX / 2 - 9)


def contour(points):
    c = fontforge.contour()
    c.moveTo(*points[0])
    for p in points[1:]:
        c.lineTo(*p)
    c.closed = True
    return c


def rect(x0, y0, x1, y1):
    return contour([(x0, y0), (x0, y1), (x1, y1), (x1, y0)])


def ellipse(cx, cy, r):
    k = 0.5522847498 * r  # the control distance of a cubic quarter circle
    c = fontforge.contour()
    c.moveTo(cx + r, cy)
    c.cubicTo((cx + r, cy + k), (cx + k, cy + r), (cx, cy + r))
    c.cubicTo((cx - k, cy + r), (cx - r, cy + k), (cx - r, cy))
    c.cubicTo((cx - r, cy - k), (cx - k, cy - r), (cx, cy - r))
    c.cubicTo((cx + k, cy - r), (cx + r, cy - k), (cx + r, cy))
    c.closed = True
    return c


class Builder:
    def __init__(self, emmentaler):
        with quiet_stderr():
            self.src = fontforge.open(emmentaler)
        f = fontforge.font()
        f.encoding = "UnicodeBmp"
        f.ascent = HALF_LINE
        f.descent = HALF_LINE
        f.fontname = f.familyname = f.fullname = FAMILY
        f.weight = "Regular"
        f.version = "1.0"
        f.copyright = (
            "Copyright (c) 1996-2017 The LilyPond authors, with Reserved Font Names "
            '"Emmentaler" and "Feta". Modified: composed notes and abbreviation marks added '
            "for Corrieval. Licensed under the SIL Open Font License, Version 1.1."
        )
        for name in ("hhea_ascent", "os2_typoascent", "os2_winascent"):
            setattr(f, name, HALF_LINE)
        f.hhea_descent = f.os2_typodescent = -HALF_LINE
        f.os2_windescent = HALF_LINE
        for name in ("hhea_ascent_add", "hhea_descent_add", "os2_typoascent_add", "os2_typodescent_add",
                     "os2_winascent_add", "os2_windescent_add"):
            setattr(f, name, False)
        f.hhea_linegap = f.os2_typolinegap = 0
        f.os2_use_typo_metrics = True
        f.os2_vendor = "CORR"
        f.appendSFNTName("English (US)", "UniqueID", FAMILY + " 1.0")
        f.appendSFNTName("English (US)", "License",
                         "This Font Software is licensed under the SIL Open Font License, Version 1.1.")
        f.appendSFNTName("English (US)", "License URL", "https://openfontlicense.org")
        self.font = f

    def emm(self, name, scale, x, y):
        """An Emmentaler glyph scaled and moved so that its origin lands on (x, y)."""
        layer = self.src[name].foreground.dup()
        layer.transform(psMat.compose(psMat.scale(scale), psMat.translate(x, y)))
        return layer

    def emm_box(self, name):
        return self.src[name].boundingBox()

    def add(self, code, name, layers, advance):
        g = self.font.createChar(code, name)
        combined = fontforge.layer()
        for layer in layers:
            if isinstance(layer, fontforge.contour):
                combined += layer
            else:
                for c in layer:
                    combined += c
        g.foreground = combined
        g.removeOverlap()
        g.correctDirection()
        g.round()
        g.width = int(round(advance))

    def centred(self, code, name, emm_name, frame, size=1.0, ref_y_emm=None):
        """An Emmentaler symbol with its ink centred in the advance and its reference height (its
        origin, or the middle of its ink when ref_y_emm is "middle") on the frame's point."""
        k = frame.emm(size)
        x0, y0, x1, y1 = self.emm_box(emm_name)
        ref = (y0 + y1) / 2 if ref_y_emm == "middle" else 0.0
        advance = (x1 - x0) * k
        self.add(code, name, [self.emm(emm_name, k, -x0 * k, frame.ref_y - ref * k)], advance)

    def note(self, code, name, head, frame, size=1.0, stem=None, flag=None, advance_factor=2.4):
        """A note whose head centre lands on the frame's point. The advance is advance_factor times
        the head width, head centred, since the drawing code divides the advance by that factor
        to get the head width that places stems, beams and ledger lines. Stems: "down" stands on
        the left edge of the head and hangs from its centre, as single notes point to the beam line
        below the stave; "up" stands on the right edge, for gracenotes. Either is centred on the
        edge, as the stems that groups draw are. `stem` is (direction, length in gaps)."""
        k = frame.emm(size)
        hx0, hy0, hx1, hy1 = self.emm_box(head)
        head_width = (hx1 - hx0) * k
        advance = round(advance_factor * head_width)
        left = (advance - head_width) / 2
        cy = frame.ref_y
        layers = [self.emm(head, k, left - hx0 * k, cy - (hy0 + hy1) / 2 * k)]
        if stem is not None:
            direction, length = stem
            t = EMM_STEM * k
            edge = left if direction == "down" else left + head_width
            tip = cy - length * EMM_SPACE * k if direction == "down" else cy + length * EMM_SPACE * k
            layers.append(rect(edge - t / 2, min(cy, tip), edge + t / 2, max(cy, tip)))
            if flag is not None:
                # Emmentaler's flags have their origin at the stem's tip, on the stem's left side.
                layers.append(self.emm(flag, k, edge - t / 2, tip))
        self.add(code, name, layers, advance)

    def build(self):
        # Melody notes, stems down (3.5 gaps, 4.25 for three flags as engravers lengthen them).
        self.note(36, "note.semibreve", "noteheads.s0", NOTE)
        self.note(37, "note.minim", "noteheads.s1", NOTE, stem=("down", 3.5))
        self.note(38, "note.crotchet", "noteheads.s2", NOTE, stem=("down", 3.5))
        self.note(39, "note.quaver", "noteheads.s2", NOTE, stem=("down", 3.5), flag="flags.d3")
        self.note(40, "note.semiquaver", "noteheads.s2", NOTE, stem=("down", 3.5), flag="flags.d4")
        self.note(41, "note.demisemiquaver", "noteheads.s2", NOTE, stem=("down", 4.25), flag="flags.d5")
        self.note(120, "note.cross", "noteheads.s2cross", NOTE, stem=("down", 3.5))
        self.note(34, "head.melody", "noteheads.s2", NOTE)

        # Small notes drawn alone in a bar: the single note's box, heads of gracenote size, stems
        # up, 5 gaps long at full size so that three flags clear the head. (Movements built from
        # definitions hold only 33 and 75; a 43 read into one would stand 0.8u high there.)
        self.note(43, "grace.three", "noteheads.s2", NOTE, GRACE_SIZE, ("up", 5), "flags.u5")
        self.note(74, "grace.one", "noteheads.s2", NOTE, GRACE_SIZE, ("up", 5), "flags.u3")
        # Gracenotes of movements, in the gracenote box: the single gracenote is a whole note with
        # its flags; the bare head is measured with 3.5 in place of 2.4 by the drawing code.
        self.note(75, "grace.single", "noteheads.s2", GRACE, GRACE_SIZE, ("up", 5), "flags.u5")
        self.note(33, "grace.head", "noteheads.s2", GRACE, GRACE_SIZE, advance_factor=3.5)

        # Emmentaler's clefs have their origin on their line.
        self.centred(48, "clef.treble", "clefs.G", TREBLE)
        self.centred(204, "clef.bass", "clefs.F", BASS)
        # Its sharp and time symbols are centred on their origin; its digits stand on it.
        self.centred(64, "sharp", "accidentals.sharp", SHARP)
        self.centred(46, "time.cut", "timesig.C22", SYMBOL)
        self.centred(47, "time.common", "timesig.C44", SYMBOL)
        digits = ["zero", "one", "two", "three", "four", "five", "six", "seven", "eight", "nine"]
        for n, name in enumerate(digits):
            self.centred(49 + n, "digit." + name, name, DIGIT, ref_y_emm="middle")

        self.abbreviation_marks()

    def abbreviation_marks(self):
        """The 13 marks that stand for recurring figures: simple shapes that differ at a glance,
        half an em across, centred in the box (their boxes are not tied to the stave)."""
        s = UPM * 0.5
        r = s / 2
        w = s * 0.14  # stroke of the open shapes
        advance = s * 1.25
        cx = advance / 2

        def scaled(points, about, factor):
            ax, ay = about
            return [(ax + (x - ax) * factor, ay + (y - ay) * factor) for x, y in points]

        def outline(points, about, inradius):
            # An open shape of even stroke: the outline less itself shrunk about its incentre.
            inner = contour(scaled(points, about, (inradius - w) / inradius))
            inner.reverseDirection()
            return [contour(points), inner]

        square = [(cx - r, -r), (cx - r, r), (cx + r, r), (cx + r, -r)]
        diamond = [(cx, -r), (cx - r, 0), (cx, r), (cx + r, 0)]
        # Equilateral triangles of circumradius r, moved down a quarter r so that they stand as
        # high above the baseline as below it; the inradius is r / 2.
        tri_r = r / 2
        tri_centre = (cx, -r / 4)
        up = [(cx - r * 0.866, -r * 0.75), (cx, r * 0.75), (cx + r * 0.866, -r * 0.75)]
        down = [(x, -y) for x, y in up]
        arm = w * 0.8
        quarter = [(cx - arm, -r), (cx - arm, -arm), (cx - r, -arm)]  # one arm's side and the corner
        plus = quarter + [(x, -y) for x, y in reversed(quarter)]
        plus += [(2 * cx - x, -y) for x, y in plus]
        turn = psMat.compose(psMat.compose(psMat.translate(-cx, 0), psMat.rotate(math.pi / 4)),
                             psMat.translate(cx, 0))
        saltire = contour(plus)
        saltire.transform(turn)
        ring_hole = ellipse(cx, 0, r - w)
        ring_hole.reverseDirection()

        marks = [
            (0x178, "mark.disc", [ellipse(cx, 0, r)]),
            (0xA0, "mark.ring", [ellipse(cx, 0, r), ring_hole]),
            (0xA1, "mark.square", [contour(square)]),
            (0xA2, "mark.square.open", outline(square, (cx, 0), r)),
            (0xA3, "mark.triangle", [contour(up)]),
            (0xA4, "mark.triangle.open", outline(up, tri_centre, tri_r)),
            (0xA5, "mark.diamond", [contour(diamond)]),
            (0xA6, "mark.diamond.open", outline(diamond, (cx, 0), r * 0.7071)),
            (0xA7, "mark.plus", [contour(plus)]),
            (0xA8, "mark.saltire", [saltire]),
            (0xA9, "mark.triangle.down", [contour(down)]),
            (0xAA, "mark.triangle.down.open", outline(down, (cx, r / 4), tri_r)),
            (0xAB, "mark.ring.dot", [ellipse(cx, 0, r), ring_hole.dup(), ellipse(cx, 0, w)]),
        ]
        for code, name, layers in marks:
            self.add(code, name, layers, advance)


def find_emmentaler():
    found = sorted(glob.glob("/usr/share/lilypond/*/fonts/otf/emmentaler-20.otf"))
    return found[-1] if found else None


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--emmentaler", help="emmentaler-20.otf of Debian's lilypond-fonts")
    parser.add_argument("output", help="the .otf file to write")
    args = parser.parse_args()
    source = args.emmentaler or find_emmentaler()
    if not source or not os.path.isfile(source):
        sys.exit("make_music_font.py: emmentaler-20.otf not found; install lilypond-fonts")
    builder = Builder(source)
    builder.build()
    builder.font.generate(args.output, flags=("opentype", "no-hints", "no-flex", "omit-instructions",
                                              "no-FFTM-table"))


if __name__ == "__main__":
    main()
