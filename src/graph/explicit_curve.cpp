#include "graph/explicit_curve.h"
