#include "graph/implicit_curve.h"
