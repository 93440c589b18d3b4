"""skfmm_distance.py FILE: for each line "ORDER SIZES" from standard input, replaces the doubles in the file by their
signed distance and prints the seconds that took."""
import sys
import time

import numpy as np
import skfmm

path = sys.argv[1]
for line in sys.stdin:
    order, *sizes = map(int, line.split())
    field = np.fromfile(path).reshape(sizes)
    start = time.perf_counter()
    distance = skfmm.distance(field, dx=1.0, order=order)
    seconds = time.perf_counter() - start
    np.asarray(distance).tofile(path)
    print(seconds, flush=True)
