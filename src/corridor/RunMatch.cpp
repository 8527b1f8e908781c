#include "corridor/RunMatch.h"
