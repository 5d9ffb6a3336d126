#include "engine/field_runner.h"
