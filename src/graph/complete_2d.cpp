#include "graph/plotting.h"
