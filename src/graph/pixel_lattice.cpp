#include "graph/pixel_lattice.h"
