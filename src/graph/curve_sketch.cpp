#include "graph/curve_sketch.h"
