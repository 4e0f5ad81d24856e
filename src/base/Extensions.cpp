#include "base/Extensions.h"
