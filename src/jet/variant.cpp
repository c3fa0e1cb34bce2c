#include "jet/variant.h"
