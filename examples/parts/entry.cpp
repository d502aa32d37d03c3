#include <examples/Entry.h>
#include <examples/parts/Parts.h>

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
  return Answer(message, packet, parts::Functions());
}
