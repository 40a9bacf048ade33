// A grid header that includes only lower layers: allowed.
#include <PanelKestrin/service.h>
