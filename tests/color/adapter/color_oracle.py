# Color arithmetic a second time: reads a file with a line of numbers for each color, writes a line of answers.
#
#   in    red green blue alpha   red green blue alpha (of the other color)   fraction
#   out   hue saturation brightness   red green blue of these again   blend (4)   highlight (4)   shadow (4)
#
# Hue, saturation and brightness are colorsys's; weighted sums are made of fractions, without rounding.
import colorsys
import sys
from fractions import Fraction


def blend(color, other, fraction):
    part = Fraction(fraction)
    return [float((1 - part) * Fraction(a) + part * Fraction(b)) for a, b in zip(color, other)]


for line in open(sys.argv[1]):
    numbers = [float(word) for word in line.split()]
    color, other, fraction = numbers[0:4], numbers[4:8], numbers[8]
    hsb = colorsys.rgb_to_hsv(*color[:3])
    answers = list(hsb) + list(colorsys.hsv_to_rgb(*hsb)) + blend(color, other, fraction)
    answers += blend(color, [1.0, 1.0, 1.0, color[3]], fraction) + blend(color, [0.0, 0.0, 0.0, color[3]], fraction)
    print(" ".join(repr(answer) for answer in answers))
