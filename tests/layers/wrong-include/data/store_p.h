// A data header over shared/: allowed.
#include "shared/helper_p.h"
