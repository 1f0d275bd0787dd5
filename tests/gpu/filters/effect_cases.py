"""Effects: what moves places, draws patterns, or is made of several filters."""

from color_cases import look
from formulas import bell, blur, over, stored


def soft_elegance(p):
    pale = stored(look("soft_elegance_1")(p))
    return look("soft_elegance_2")(stored(over(pale, blur(bell(22, 10))(pale), 0.14)))


# As in filter_numpy_test.py.
CASES = [
    # The bytes after the first table and the mixture may differ by one, and the second table is 2.5 times as steep.
    ("SoftEleganceFilter", soft_elegance, ["noise"], 4),
]
