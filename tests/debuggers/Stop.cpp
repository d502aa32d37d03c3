#include <tests/debuggers/Stop.h>

// In a file of its own, so that no call of it is optimised away.
void Stop() {}
