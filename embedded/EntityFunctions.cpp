// The platform functions for single entities.
#include <embedded/Caller.h>
#include <embedded/PlatformCall.h>
#include <embedded/Session.h>
#include <embedded/drawing/EntityChanger.h>
#include <embedded/drawing/EntityReader.h>
#include <embedded/selection/Wildcard.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

using namespace lomlisp::embedded;

namespace {

Drawing& OpenDrawing() { return Host::Instance().CurrentDrawing(); }

int Status(PlatformCall& call, std::optional<std::string> objection) {
  return objection ? call.Refuse(std::move(*objection)) : RTNORM;
}

const char* const kNoSuchEntity = "no entity has this name, or it is erased";

int GiveName(PlatformCall& call, const Object* object, ads_name name, const char* objection) {
  if (object == nullptr) return call.Refuse(objection);
  if (name == nullptr) return call.Refuse("no place for the name");
  OpenDrawing().NameOf(object->handle, name);
  call.GivesName(name);
  return RTNORM;
}

int NextEntity(PlatformCall& call, const ads_name name, ads_name next) {
  Drawing& drawing = OpenDrawing();
  const char* const end = "the drawing has no entities behind it";
  if (name == nullptr) return GiveName(call, Drawing::First(drawing.Entities()), next, end);
  const Object* entity = drawing.FindLive(name);
  if (entity == nullptr) return call.Refuse(kNoSuchEntity);
  return GiveName(call, Drawing::Next(*entity), next, end);
}

resbuf* ReadEntity(PlatformCall& call, const ads_name name, const resbuf* applications, const void* caller) {
  Host& host = Host::Instance();
  const Drawing& drawing = host.CurrentDrawing();
  const Object* entity = drawing.FindLive(name);
  std::string objection = kNoSuchEntity;
  const auto patterns = ApplicationNames(Capture(applications), objection);
  if (entity == nullptr || !patterns) {
    call.Refuse(objection);
    return nullptr;
  }
  const auto isWanted = [&](std::wstring_view application) {
    return std::any_of(patterns->begin(), patterns->end(),
                       [&](const std::wstring& pattern) { return MatchesWildcard(application, pattern); });
  };
  return Materialise(EntityGroups(drawing, *entity, isWanted), host.ledger, Owner::Client, caller);
}

std::wstring CurrentLayer() {
  const SystemVariable* layer = Host::Instance().variables.Find(L"CLAYER");
  return layer != nullptr ? layer->value.text : L"0";
}

}  // namespace

int acdbEntDel(const ads_name name) {
  PlatformCall call("acdbEntDel");
  return call.TakesName(name).Run([&] { return Status(call, DeleteEntity(OpenDrawing(), name)); });
}

resbuf* acdbEntGetX(const ads_name name, const resbuf* applications) {
  const void* caller = LOMLISP_CALLER;
  PlatformCall call("acdbEntGetX");
  return call.TakesName(name).Takes(applications).Run([&] {
    return ReadEntity(call, name, applications, caller);
  });
}

int acdbEntLast(ads_name name) {
  PlatformCall call("acdbEntLast");
  return call.Run([&] {
    return GiveName(call, Drawing::Last(OpenDrawing().Entities()), name, "the drawing has no entities");
  });
}

int acdbEntMake(const resbuf* groups) {
  PlatformCall call("acdbEntMake");
  return call.Takes(groups).Run([&] {
    EntityMaker& maker = Host::Instance().CurrentSession().maker;
    return Status(call, maker.Make(Capture(groups), {CurrentLayer()}));
  });
}

int acdbEntMod(const resbuf* groups) {
  PlatformCall call("acdbEntMod");
  return call.Takes(groups).Run([&] { return Status(call, ModifyEntity(OpenDrawing(), Capture(groups))); });
}

int acdbEntNext(const ads_name name, ads_name next) {
  PlatformCall call("acdbEntNext");
  return call.TakesName(name).Run([&] { return NextEntity(call, name, next); });
}

int acdbEntUpd(const ads_name name) {
  PlatformCall call("acdbEntUpd");
  return call.TakesName(name).Run([&] { return Status(call, UpdateEntity(OpenDrawing(), name)); });
}

int acdbHandEnt(const ACHAR* handle, ads_name object) {
  PlatformCall call("acdbHandEnt", handle);
  return call.Run([&] {
    const auto number = handle != nullptr ? ReadHandle(handle) : std::nullopt;
    if (!number) return call.Refuse("no handle: a text of hexadecimal digits is expected");
    return GiveName(call, OpenDrawing().FindHandle(*number), object, "no object has this handle");
  });
}
