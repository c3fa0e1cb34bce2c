#include "platform/runtime_error.h"
