#include <lomlisp/resbuf/DxfTexts.h>

#include <lomlisp/platform/suite.h>
#include <lomlisp/resbuf/Text.h>

#include <unordered_map>

namespace lomlisp::dxftexts {

namespace {

struct Holders {
  size_t count = 1;
  // The text stands under a code that is not for texts. Only then is the value of such a code ever
  // looked up.
  bool underForeignCode = false;
};

struct Registry {
  std::unordered_map<const void*, Holders> texts;
  size_t underForeignCode = 0;
};

// Never destroyed: records may outlive every other static object.
Registry& TheRegistry() {
  static Registry* const registry = new Registry;
  return *registry;
}

using Entry = std::unordered_map<const void*, Holders>::iterator;

Entry Find(const resbuf& record) {
  Registry& registry = TheRegistry();
  const Entry none = registry.texts.end();
  if (!MayHold(record.restype) || registry.texts.empty()) return none;
  const bool textCode = IsTextCode(record.restype);
  if (!textCode && registry.underForeignCode == 0) return none;
  const Entry entry = registry.texts.find(record.resval.rstring);
  return entry == none || textCode || entry->second.underForeignCode ? entry : none;
}

void Remove(Entry entry) {
  if (entry->second.underForeignCode) --TheRegistry().underForeignCode;
  TheRegistry().texts.erase(entry);
}

}  // namespace

bool IsTextCode(short type) { return type == RTDXF0 || (type != RTSTR && DxfType(type) == RTSTR); }

bool Holds(const resbuf& record) { return Find(record) != TheRegistry().texts.end(); }

void Own(const resbuf& record) {
  if (record.resval.rstring == nullptr) return;
  Registry& registry = TheRegistry();
  Holders& holders = registry.texts.try_emplace(record.resval.rstring).first->second;
  if (!IsTextCode(record.restype) && !holders.underForeignCode) {
    holders.underForeignCode = true;
    ++registry.underForeignCode;
  }
}

void Hold(const resbuf& record) {
  const Entry entry = Find(record);
  if (entry != TheRegistry().texts.end()) ++entry->second.count;
}

void Drop(const resbuf& record) {
  const Entry entry = Find(record);
  if (entry == TheRegistry().texts.end() || --entry->second.count != 0) return;
  Remove(entry);
  acad_free(record.resval.rstring);
}

void Release(resbuf& record) {
  const Entry entry = Find(record);
  if (entry == TheRegistry().texts.end()) return;
  if (entry->second.count == 1) {
    Remove(entry);
    return;
  }
  --entry->second.count;
  record.resval.rstring = CopyText(record.resval.rstring);
}

void HandOver(resbuf& record) {
  const bool ours = Holds(record);
  if (IsTextCode(record.restype)) {
    if (ours)
      Release(record);
    else
      record.resval.rstring = nullptr;
  } else if (ours) {
    Drop(record);
    record.resval = {};
  }
}

}  // namespace lomlisp::dxftexts
