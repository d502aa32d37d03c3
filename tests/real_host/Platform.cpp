#include <tests/real_host/Platform.h>

#include <cstring>
#include <cwchar>

namespace {

resbuf* entity = nullptr;
resbuf* arguments = nullptr;
std::string modified;
std::string returned;

std::string Digits(const ads_binary& binary) {
  std::string digits;
  for (short i = 0; i < binary.clen; ++i) {
    const auto byte = static_cast<unsigned char>(binary.buf[i]);
    digits += "0123456789ABCDEF"[byte / 16];
    digits += "0123456789ABCDEF"[byte % 16];
  }
  return digits;
}

bool HoldsBytes(short code) { return (code >= 310 && code <= 319) || code == 1004; }
bool HoldsText(short code) {
  return code == RTSTR || (code >= 0 && code <= 9) || (code >= 300 && code <= 309) ||
         (code >= 1000 && code <= 1003);
}

std::string Describe(const resbuf& record) {
  std::string text = std::to_string(record.restype) + " ";
  if (HoldsBytes(record.restype)) return text + "[" + Digits(record.resval.rbinary) + "]";
  if (!HoldsText(record.restype) || record.resval.rstring == nullptr) return text + "?";
  const std::wstring value = record.resval.rstring;
  text += "'";
  for (const wchar_t character : value) text += static_cast<char>(character);
  return text + "'";
}

std::string DescribeChain(const resbuf* chain) {
  std::string text;
  for (; chain != nullptr; chain = chain->rbnext)
    text += Describe(*chain) + (chain->rbnext != nullptr ? ", " : "");
  return text;
}

}  // namespace

void SetEntity(resbuf* chain) { entity = chain; }
const std::string& Modified() { return modified; }
void SetArguments(resbuf* chain) { arguments = chain; }
const std::string& Returned() { return returned; }

resbuf* TextGroup(short code, const ACHAR* text, resbuf* next) {
  resbuf* const record = acutNewRb(code);
  const size_t size = std::wcslen(text) + 1;
  record->resval.rstring = static_cast<ACHAR*>(acad_malloc(size * sizeof(ACHAR)));
  std::wmemcpy(record->resval.rstring, text, size);
  record->rbnext = next;
  return record;
}

resbuf* BinaryGroup(short code, const std::string& bytes, resbuf* next) {
  resbuf* const record = acutNewRb(code);
  // What the text's pointer would be is set throughout.
  std::memset(&record->resval, 0x7F, sizeof record->resval);
  record->resval.rbinary.clen = static_cast<short>(bytes.size());
  record->resval.rbinary.buf = static_cast<char*>(acad_malloc(bytes.size()));
  std::memcpy(record->resval.rbinary.buf, bytes.data(), bytes.size());
  record->rbnext = next;
  return record;
}

struct resbuf* acutNewRb(int type) {
  auto* const record = static_cast<resbuf*>(acad_malloc(sizeof(resbuf)));
  std::memset(record, 0, sizeof *record);
  record->restype = static_cast<short>(type);
  return record;
}

int acutRelRb(struct resbuf* chain) {
  while (chain != nullptr) {
    resbuf* const next = chain->rbnext;
    if (HoldsBytes(chain->restype)) acad_free(chain->resval.rbinary.buf);
    if (HoldsText(chain->restype)) acad_free(chain->resval.rstring);
    acad_free(chain);
    chain = next;
  }
  return RTNORM;
}

struct resbuf* acutBuildList(int type, ...) {
  return acutNewRb(type);
}
int acutPrintf(const ACHAR*, ...) { return RTNORM; }

struct resbuf* acdbEntGetX(const ads_name, const struct resbuf*) {
  resbuf* const given = entity;
  entity = nullptr;
  return given;
}
int acdbEntMod(const struct resbuf* groups) {
  modified = DescribeChain(groups);
  return RTNORM;
}

int acdbEntDel(const ads_name) { return RTERROR; }
int acdbEntLast(ads_name) { return RTERROR; }
int acdbEntMake(const struct resbuf* groups) { return acdbEntMod(groups); }
int acdbEntNext(const ads_name, ads_name) { return RTERROR; }
int acdbEntUpd(const ads_name) { return RTERROR; }
int acedEntSel(const ACHAR*, ads_name, ads_point) { return RTERROR; }
int acedSSGet(const ACHAR*, const void*, const void*, const struct resbuf*, ads_name) { return RTERROR; }
struct resbuf* acedGetArgs(void) {
  return arguments;
}
int acedRetVal(const struct resbuf* record) { return acedRetList(record); }
int acedRetList(const struct resbuf* chain) {
  returned = DescribeChain(chain);
  return RTNORM;
}
int acedGetSym(const ACHAR*, struct resbuf**) { return RTERROR; }
int acedPutSym(const ACHAR*, struct resbuf*) { return RTERROR; }
int acedGetVar(const ACHAR*, struct resbuf*) { return RTERROR; }
int acedSetVar(const ACHAR*, const struct resbuf*) { return RTERROR; }
