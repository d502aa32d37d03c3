#include <examples/Entry.h>
#include <examples/plan/Plan.h>

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
  return Answer(message, packet, plan::Functions());
}
