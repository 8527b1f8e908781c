#include "corridor/Passes.h"
