#include <bench/SampleDrawing.h>
#include <bench/peers/Drawings.h>
#include <bench/peers/Made.h>

#include <memory>

using namespace lomlisp::embedded;

Host& HostWithDrawing(int entities) {
  Host& host = Host::Instance();
  host.log.Enable(false);
  FillWithSamples(host.CurrentDrawing(), entities);
  return host;
}

Digest DigestOfColours(const Drawing& drawing) {
  Digest digest;
  for (const Object* entity : drawing.Entities().members) digest.Integer(IntegerOf(entity->groups, 62));
  return digest;
}

int NewColour(int position, int run) { return (position + run) % 250 + 1; }

Workload CallsInHost(int calls, void (*pick)()) {
  Host& host = Host::Instance();
  host.log.Enable(false);
  host.Define(L"PICK", [pick] {
    pick();
    return RTNORM;
  });
  std::string error;
  auto arguments = std::make_shared<Chain>(*FromText(L"1 2.5 \"text\" (1 2 3) 5", error));
  Workload work;
  work.run = [=, &host] {
    for (int i = 0; i < calls; ++i) host.Call(L"PICK", *arguments);
  };
  work.check = [=, &host] {
    Digest digest;
    digest.Characters(host.Call(L"PICK", *arguments).Text());
    return digest;
  };
  return work;
}
