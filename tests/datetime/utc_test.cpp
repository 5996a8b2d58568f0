#include "datetime/zone.h"

const Zone kZone = {0, false};
