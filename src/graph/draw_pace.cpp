#include "graph/draw_pace.h"
