// Compiled with the include folders of one floor, to see which headers can be reached from there.
#ifdef TRIMORA_PROBED_HEADER
#include TRIMORA_PROBED_HEADER
#endif
