#include "engine/field.h"
