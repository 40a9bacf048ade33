// A private header of shared/ that reaches up into data/: the layer check must refuse it.
#include "data/store_p.h"
