// A bottom-layer header that reaches up into the grid: the layer check must refuse it.
#include <PanelKestrin/view.h>
