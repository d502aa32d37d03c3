// Texts that come from outside: every function that takes a text takes them as they are. None of them is a
// format for printing, none ends anywhere but at its first zero, none is too long.
#include <lomlisp/platform/modules.h>
#include <lomlisp/text/UpperCase.h>

#include <embedded/Text.h>
#include <embedded/dxf/Dxf.h>
#include <embedded/dxf/TextCoding.h>
#include <embedded/selection/Wildcard.h>
#include <tests/support/Chains.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>

namespace lomlisp::test::hostile_texts {
namespace {

using T = const std::wstring&;

// --- The texts ---

struct HostileText {
  const char* name;
  std::wstring text;
  // What the library's own Format makes of it without values.
  std::wstring formatted;
};

std::wstring Repeated(std::wstring_view part, int times) {
  std::wstring text;
  for (int i = 0; i < times; ++i) text += part;
  return text;
}

std::wstring Controls() {
  std::wstring text;
  for (wchar_t control = 1; control < L' '; ++control) text += control;
  for (wchar_t control = 0x7F; control < 0xA0; ++control) text += control;
  return text;
}

// Characters by their codes, which texts in quotes must not name.
std::wstring Codes(std::initializer_list<int> codes) {
  std::wstring text;
  for (const int code : codes) text += static_cast<wchar_t>(code);
  return text;
}

HostileText AsItIs(const char* name, std::wstring text) { return {name, text, text}; }

const std::vector<HostileText>& Texts() {
  static const std::vector<HostileText> texts = {
      AsItIs("empty", L""),
      {"directives", L"%n %s %", L" "},
      {"many directives", Repeated(L"%n%s%p%*.*f%hs%S%I64d%ls", 100), Repeated(L"64d", 100)},
      {"huge directive", L"%2147483647d%.2147483647f%99999999999999999999s", L""},
      {"zero inside", std::wstring(L"q\0b%s", 5), L"q"},
      AsItIs("high surrogate", Codes({'a', 0xD800, 'b'})),
      AsItIs("high surrogate at the end", Codes({'a', 0xD800})),
      AsItIs("reversed surrogates", Codes({0xDC00, 0xD800})),
      AsItIs("no characters", Codes({0xFFFF, 0xFFFE, 0xFDD0})),
      AsItIs("greatest and least", Codes({WCHAR_MAX, WCHAR_MIN == 0 ? 0xFFFE : int{-1},
                                          sizeof(wchar_t) > 2 ? 0x110000 : 'y', 'x'})),
      AsItIs("controls", Controls()),
      AsItIs("quotes and brackets", L"\")(. \\\" ;'` ("),
      AsItIs("patterns", L"[~[-]*?#@.,`~*"),
      AsItIs("long", std::wstring(kLarge, L'x')),
      AsItIs("long brackets", std::wstring(kLarge, L'(')),
      AsItIs("long pattern", Repeated(L"*[", kLarge / 2)),
      {"long directives", Repeated(L"%s", kLarge / 2), L""},
  };
  return texts;
}

// What a pointer to the text shows.
std::wstring Visible(T text) { return text.c_str(); }
std::wstring Quoted(T text) { return L'"' + Visible(text) + L'"'; }
// One record is printed through a buffer of 2,048 characters.
std::wstring Printed(T text) { return Quoted(text).substr(0, 2047); }

// --- What functions make of them ---

Host& TheHost() { return Host::Instance(); }
std::wstring Console() { return TheHost().console.Take(); }

std::wstring Content(const CLOMAdsLispVar& value) {
  return value.StringP() ? static_cast<wchar_t*>(value.GetAtom()) : L"<no text>";
}
std::wstring Content(const embedded::Chain& chain) {
  return chain.size() == 1 ? chain[0].text : L"<no text>";
}
std::wstring Content(const resbuf* record) {
  return record != nullptr ? record->resval.rstring : L"<no text>";
}

template <typename Number>
std::wstring Cast(T text) {
  Number number{};
  CLOMAdsLisp::SetQ(number, text);
  return Console();
}

// Messages of checked casts.
std::wstring CastMessage(const std::wstring& type, T text) {
  return L"Fehler bei Cast von ResBuf auf " + type + L": ResBuf ist vom Typ RTSTR\nNameValue= " +
         Printed(text) + L"\nName";
}

std::wstring Formatted(const wchar_t* format, T text) {
  CArray<CLOMAdsLispVar, CLOMAdsLispVar> values;
  values.Add(text);
  CLOMAdsLispVar result;
  CLOMAdsLispVar::Format(result, format, values);
  return Content(result);
}

std::wstring FormattedAsFormat(T text) {
  CLOMAdsLispVar result = L"";
  CLOMAdsLispVar::Format(result, text.c_str(), {});
  return Content(result);
}

// "taken", or "refused" where just that is said, with the whole text.
std::wstring WasRead(bool good, T text) {
  const std::wstring message = L"LispVar::Read : String \"" + Visible(text) + L"\" war nicht wohlgeformt\n";
  const std::wstring printed = Console();
  if (good) return printed.empty() ? L"taken" : printed;
  return printed.ends_with(message) ? L"refused" : L"refused without its message";
}

std::wstring ReadBare(T text) {
  CLOMAdsLispVar value;
  return WasRead(value.Read(text.c_str()), text);
}

std::wstring ReadQuoted(T text) {
  CLOMAdsLispVar value;
  const std::wstring quoted = Quoted(text);
  const std::wstring result = WasRead(value.Read(quoted.c_str()), quoted);
  return result == L"taken" ? Content(value) : result;
}

// A text in quotes has no escapes, and less than 100 characters with them.
std::wstring ReadableInQuotes(T text) {
  const bool isReadable = Visible(text).find(L'"') == std::wstring::npos && Quoted(text).size() < 100;
  return isReadable ? Visible(text) : L"refused";
}

std::wstring UpperCased(T text) {
  std::wstring upper = Visible(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), UpperCase);
  return upper;
}

std::wstring TextReplaced(T from, T by, T text) {
  CStringArray olds, news;
  olds.Add(from.c_str());
  news.Add(by.c_str());
  CLOMAdsLispVar value = ListOf({text});
  value.ReplaceTextW(olds, news);
  return Content(CLOMAdsLisp::Car(value));
}

CLOMAdsLispVar Pairs(T key) { return ListOf({Dotted({L"another", 1}), Dotted({key, key})}); }
template <typename Integer>
std::wstring Number(Integer number) {
  return std::to_wstring(number);
}
std::wstring One(T) { return L"1"; }
std::wstring Zero(T) { return L"0"; }

std::wstring FromChain(T text) { return Content(CLOMAdsLispVar(Records{String(text.c_str())})); }

std::wstring ToChain(T text) {
  ADSList chain;
  CLOMAdsLispVar(text).LispToADS(chain);
  return Content(chain.First());
}

std::wstring ThroughGroups(T text) {
  const CLOMAdsLispVar groups{Records{String(L"LINE", 0), String(text.c_str(), 1)}};
  ADSList chain;
  groups.LispToDXF(chain);
  return Content(chain.Last());
}

std::wstring ThroughExtendedData(T text) {
  ADSList chain;
  CLOMAdsLispVar(text).LispToXData(chain);
  CLOMAdsLispVar value;
  value.XDataToLisp(chain);
  return Content(value);
}

std::wstring ThroughVariant(T text) {
  const COleVariant variant = CLOMAdsLispVar(COleVariant(CString(text.c_str()))).LispToOleVariant();
  return std::wstring(variant.bstrVal, SysStringLen(variant.bstrVal));
}

std::wstring ThroughCopies(T text) {
  resbuf* const chain = ResBuf::copyToAcadResBufList(Records{String(text.c_str())});
  const std::wstring copy = Content(chain);
  acutRelRb(chain);
  return copy;
}

std::wstring ThroughBuildList(T text) {
  resbuf* const chain = acutBuildList(RTSTR, text.c_str(), 0);
  const std::wstring copy = Content(chain);
  acutRelRb(chain);
  return copy;
}

std::wstring AsGroupOfBytes(T text) {
  ResBuf record(text.c_str());
  if (!record.MakeDXF(310)) return Console();
  record.MakeBaseType();
  return Content(&record);
}

std::wstring ListPrinted(T text) {
  ADSList chain;
  CLOMAdsLispVar(text).LispToADS(chain);
  chain.Print();
  return Console();
}

std::wstring DebugPrinted(T text) {
  const ResBuf record(text.c_str());
  std::wstring buffer(50, L'\0');
  wchar_t* cursor = buffer.data();
  auto room = static_cast<unsigned long>(buffer.size());
  record.DebugPrint(0, cursor, room);
  return buffer.c_str();
}

std::wstring InBuffer(T text, size_t size, bool asRecord) {
  std::vector<wchar_t> buffer(size);
  if (asRecord)
    ResBuf(text.c_str()).Print(buffer.data(), size);
  else
    CLOMAdsLispVar(text).PrinC(buffer.data(), size);
  return buffer.data();
}

// --- The host ---

int ReturnFirst() {
  CLOMAdsLispVar first;
  CLOMAdsLisp::Parameter(first);
  CLOMAdsLisp::Return(first);
  return RTNORM;
}

std::wstring ThroughCall(T text) {
  TheHost().Define(L"FIRST", ReturnFirst);
  embedded::Chain arguments(1);
  arguments[0].type = RTSTR;
  arguments[0].text = text;
  arguments[0].hasText = true;
  return Content(TheHost().Call(L"FIRST", arguments).value);
}

std::wstring ReturnedText(T text) {
  TheHost().Define(L"TEXT", [&] { return acedRetStr(text.c_str()); });
  return Content(TheHost().Call(L"TEXT", L"").value);
}

std::wstring ThroughSymbol(T text) {
  CLOMAdsLisp::PutSym(L"SYMBOL", text);
  return Content(CLOMAdsLisp::GetSym(L"SYMBOL"));
}

std::wstring AsSymbol(T name) {
  if (CLOMAdsLisp::PutSym(name, 1).NilP()) return Console();
  return Content(CLOMAdsLisp::GetSym(name).MakeString());
}

std::wstring SymbolOrRefusal(T name) {
  if (embedded::Symbols::IsLegal(Visible(name))) return L"1";
  return L"\nLOM_LispVariable::PutSym : Kann Variable \"" + Visible(name) + L"\" nicht setzen !";
}

std::wstring GotVariable(T name) { return Content(CLOMAdsLisp::GetVar(name)); }

std::wstring SetVariable(T name, const CLOMAdsLispVar& value) {
  CLOMAdsLisp::SetVar(name, value);
  return Console();
}

std::wstring ThroughVariable(T text) {
  if (CLOMAdsLisp::SetVar(L"USERS1", text).NilP()) return Console();
  return Content(CLOMAdsLisp::GetVar(L"USERS1"));
}

CLOMAdsLispVar TextEntity(const CLOMAdsLispVar& layer, const CLOMAdsLispVar& text) {
  const double place[] = {0, 0, 0};
  CLOMAdsLispVar point(place);
  return ListOf(
      {Dotted({0, L"TEXT"}), Dotted({8, layer}), Dotted({10, point}), Dotted({40, 1.0}), Dotted({1, text})});
}

std::wstring LastEntity(int code) {
  const CLOMAdsLispVar group =
      CLOMAdsLisp::Assoc(code, CLOMAdsLisp::EntGet(CLOMAdsLisp::EntLast(), CLOMAdsLisp::Nil));
  return Content(CLOMAdsLisp::Cdr(group));
}

std::wstring MadeText(T text) {
  return CLOMAdsLisp::EntMake(TextEntity(L"0", text)).NilP() ? L"refused" : LastEntity(1);
}

std::wstring ModifiedText(T text) {
  CLOMAdsLisp::EntMake(TextEntity(L"0", L"old"));
  const CLOMAdsLispVar name = Dotted({-1, CLOMAdsLisp::EntLast()});
  return CLOMAdsLisp::EntMod(ListOf({name, Dotted({1, text})})).NilP() ? L"refused" : LastEntity(1);
}

// A layer that there was not before comes with the entity, or there is none of them.
std::wstring MadeLayer(T layer) {
  const bool isRefused = CLOMAdsLisp::EntMake(TextEntity(layer, L"text")).NilP();
  resbuf* const entry = acdbTblSearch(L"LAYER", layer.c_str(), 0);
  const bool isThere = entry != nullptr;
  acutRelRb(entry);
  if (isRefused) return L"made or refused";
  return isThere ? L"made or refused" : L"no entry";
}

std::wstring MadeOrRefused(T) { return L"made or refused"; }

std::wstring AskedFor(T prompt) {
  TheHost().answers.Add(embedded::PressEnter{});
  CLOMAdsLisp::EntSel(prompt);
  return Console();
}

std::wstring Asked(T prompt) {
  TheHost().answers.Add(embedded::PressEnter{});
  wchar_t answer[133];
  acedGetString(1, prompt.c_str(), answer);
  return Console();
}

// Behind the prompt stands the answer, which is empty.
std::wstring VisibleLine(T text) { return Visible(text) + L"\n"; }

std::wstring Typed(T text) {
  TheHost().answers.Add(embedded::TypeText{text});
  wchar_t answer[133];
  return acedGetString(1, L"", answer) == RTNORM ? answer : L"<no answer>";
}

// The first keyword of the list, which is typed as it stands there.
std::wstring TypedKeyword(T text) {
  if (acedInitGet(0, text.c_str()) != RTNORM) return L"no keyword";
  TheHost().answers.Add(embedded::TypeText{text});
  wchar_t answer[133];
  const int status = acedGetKword(L"", answer);
  return status == RTNORM || status == RTERROR || status == RTNONE ? L"asked" : L"status";
}

// How many entities are found among one that has the text.
std::wstring Found(T text, const std::wstring& pattern) {
  CLOMAdsLisp::EntMake(TextEntity(L"0", text));
  const resbuf filter = String(pattern.c_str(), 1);
  ads_name set{};
  if (acedSSGet(L"X", nullptr, nullptr, &filter, set) != RTNORM) return L"0";
  int32_t length = 0;
  acedSSLength(set, &length);
  acedSSFree(set);
  return Number(length);
}

std::wstring Literally(T text) {
  std::wstring pattern;
  for (const wchar_t character : Visible(text)) {
    pattern += L'`';
    pattern += character;
  }
  return pattern;
}

// --- What the platform's functions answer to a text that is nothing they know ---

template <typename Function>
std::wstring Status(Function function) {
  return Number(function());
}

std::wstring Searched(T table, T name) {
  resbuf* const entry = acdbTblSearch(table.c_str(), name.c_str(), 0);
  acutRelRb(entry);
  return entry != nullptr ? L"found" : L"none";
}

std::wstring None(T) { return L"none"; }
std::wstring Error(T) { return Number(RTERROR); }

// Registered or refused, an application is there only in the first case.
std::wstring Registered(T name) {
  const bool isThere = acdbRegApp(name.c_str()) == RTNORM;
  return (Searched(L"APPID", name) == L"found") == isThere ? L"as said" : L"not as said";
}

// --- The embedded host ---

std::wstring PrintedByHost(T text) {
  acutPrintf(L"%s", text.c_str());
  return Console();
}

std::wstring Written(T text) {
  TheHost().console.Write(text);
  return Console();
}

std::wstring Whole(T text) { return text; }

uint32_t Code(wchar_t character) { return static_cast<uint32_t>(character); }
bool IsSurrogate(uint32_t code) { return code >= 0xD800 && code <= 0xDFFF; }
bool IsBeyondAll(uint32_t code) { return code > 0x10FFFF; }

// A lone surrogate and what is beyond the last character have no UTF-8.
std::wstring Replaced(T text) {
  std::wstring replaced = text;
  for (wchar_t& character : replaced)
    if (IsSurrogate(Code(character)) || IsBeyondAll(Code(character))) character = 0xFFFD;
  return replaced;
}

// In a file they are what is shown of them there.
std::wstring InFile(T text) {
  std::wstring shown;
  for (const wchar_t character : text) {
    wchar_t escape[10];
    std::swprintf(escape, std::size(escape), L"\\U+%04X", static_cast<unsigned int>(character) & 0xFFFF);
    if (IsSurrogate(Code(character)))
      shown += escape;
    else
      shown += IsBeyondAll(Code(character)) ? static_cast<wchar_t>(0xFFFD) : character;
  }
  return shown;
}

std::wstring ThroughText(T text) {
  embedded::Chain chain(1);
  chain[0].type = RTSTR;
  chain[0].text = Visible(text);
  chain[0].hasText = true;
  std::string error;
  const auto read = embedded::FromText(ToText(chain), error);
  return read ? Content(*read) : embedded::FromUtf8(error);
}

std::wstring ThroughFile(T text, embedded::DxfForm form) {
  embedded::Drawing drawing;
  drawing.Append(drawing.Entities(), drawing.NewObject({{0, L"TEXT"}, {8, L"0"}, {1, text}}));
  const embedded::DxfOpened opened = embedded::ReadDxf(embedded::WriteDxf(drawing, form));
  if (!opened.drawing) return embedded::FromUtf8(opened.error->message);
  return std::get<std::wstring>(opened.drawing->Entities().members[0]->groups[2].value);
}

std::wstring Coded(T text, const embedded::TextCoding& coding) {
  std::string bytes;
  coding.Encode(text, bytes);
  std::wstring decoded;
  coding.Decode(bytes, decoded);
  return decoded;
}

std::filesystem::path Path(T text) {
  const std::string bytes = embedded::Utf8(text);
  return std::filesystem::path(std::u8string(bytes.begin(), bytes.end()));
}

std::wstring OpenedAsContent(T text) {
  const auto opened = embedded::ReadDxf(embedded::Utf8(text));
  return opened.error && !opened.drawing ? L"refused" : L"opened";
}

// No file is there under such a name, or none can be.
std::wstring OpenedByName(T name) {
  const auto error = TheHost().Open("no/such/folder" / Path(name));
  return error && error->message.find("cannot be read") != std::string::npos ? L"refused" : L"opened";
}

std::wstring SavedByName(T name) {
  const auto error = TheHost().Save("no/such/folder" / Path(name));
  return error && error->message.find("cannot be written") != std::string::npos ? L"refused" : L"saved";
}

std::wstring Loaded(T name) {
  return TheHost().modules.Load("no/such/folder" / Path(name)) ? L"refused" : L"loaded";
}

std::wstring Refused(T) { return L"refused"; }

std::wstring CalledByName(T name) {
  const embedded::CallResult result = TheHost().Call(name, embedded::Chain());
  return result.errors.size() == 1 ? L"refused" : L"called";
}

std::wstring Evaluated(T text) {
  const embedded::CallResult result = TheHost().Evaluate(text);
  return !result.errors.empty() ? L"refused" : L"evaluated";
}

std::wstring Defined(T name) {
  TheHost().Define(name, [] { return acedRetInt(1); });
  const embedded::CallResult result = TheHost().Call(name, embedded::Chain());
  TheHost().Undefine(name);
  return result.errors.empty() ? Number(result.value[0].value.rint) : L"not called";
}

// --- The functions ---

struct Function {
  const char* name;
  std::wstring (*run)(T text);
  std::wstring (*expected)(T text);
};

void PrintTo(const Function& function, std::ostream* out) { *out << function.name; }

const Function kFunctions[] = {
    // values
    {"Value", [](T text) { return Content(text.c_str()); }, Visible},
    {"ValueOfWstring", [](T text) { return Content(text); }, Visible},
    {"ValueOfCString", [](T text) { return Content(CString(text.c_str(), static_cast<int>(text.size()))); },
     Visible},
    {"Record",
     [](T text) { return Content(ResBuf(text.c_str()).Next() == nullptr ? ResBuf(text.c_str()) : ResBuf()); },
     Visible},
    {"SetQCString",
     [](T text) {
       CString target;
       CLOMAdsLisp::SetQ(target, text);
       return std::wstring(target.GetString());
     },
     Visible},
    {"SetQWstring",
     [](T text) {
       std::wstring target;
       CLOMAdsLisp::SetQ(target, text);
       return target;
     },
     Visible},
    {"SetQPointer",
     [](T text) {
       const wchar_t* target = nullptr;
       const CLOMAdsLispVar value = text;
       CLOMAdsLisp::SetQ(target, value);
       return std::wstring(target);
     },
     Visible},
    {"SetQBuffer",
     [](T text) {
       wchar_t target[10];
       CLOMAdsLisp::SetQ(target, 10, text);
       Console();
       return std::wstring(target);
     },
     [](T text) { return Visible(text).substr(0, 9); }},
    {"SetQBool",
     [](T text) {
       bool target = false;
       CLOMAdsLisp::SetQ(target, text);
       return Number(target);
     },
     [](T text) { return Number(!Visible(text).empty()); }},
    {"SetQShort", Cast<short>, [](T text) { return CastMessage(L"short", text); }},
    {"SetQInt", Cast<int>, [](T text) { return CastMessage(L"int", text); }},
    {"SetQLong", Cast<long>, [](T text) { return CastMessage(L"long", text); }},
    {"SetQInt64", Cast<__int64>, [](T text) { return CastMessage(L"__int64", text); }},
    {"SetQDouble", Cast<double>, [](T text) { return CastMessage(L"double", text); }},
    {"GetPoint",
     [](T text) {
       double point[3];
       CLOMAdsLispVar(text).GetPoint(point);
       return Console();
     },
     [](T) -> std::wstring { return L"CLOMAdsLispVar::GetPoint() : Kein Punkt !\n"; }},
    {"MakeString", [](T text) { return Content(CLOMAdsLispVar(text).MakeString()); }, Visible},
    {"MakeInt", [](T text) { return Content(CLOMAdsLispVar(text).MakeInt().MakeString()); }, Zero},
    {"MakeFloat", [](T text) { return Content(CLOMAdsLispVar(text).MakeFloat().MakeString()); }, Zero},
    {"MakeBool", [](T text) { return Content(CLOMAdsLispVar(text).MakeBool().MakeString()); },
     [](T text) { return Number(Visible(text).starts_with(L'x')); }},
    {"MakeMaximum", [](T text) { return Content(CLOMAdsLispVar(text).MakeMaximum(L"")); }, Visible},
    {"MakeMinimum", [](T text) { return Content(CLOMAdsLispVar(text).MakeMinimum(L"")); },
     [](T) { return std::wstring(); }},
    // equality and order
    {"Equal", [](T text) { return Number(CLOMAdsLispVar(text).Equal(text, 0.0)); }, One},
    {"EqualToAnother",
     [](T text) { return Number(CLOMAdsLispVar(text) == CLOMAdsLispVar(Visible(text) + L"x")); }, Zero},
    {"Eq", [](T text) { return Number(CLOMAdsLispVar(text).Eq(text)); }, One},
    {"Less", [](T text) { return Number(CLOMAdsLispVar(text) < CLOMAdsLispVar(Visible(text) + L"x")); }, One},
    {"NotLess", [](T text) { return Number(CLOMAdsLispVar(text) < CLOMAdsLispVar(text)); }, Zero},
    {"Sort",
     [](T text) {
       return Content(
           CLOMAdsLisp::Car(CLOMAdsLisp::Sort(ListOf({Visible(text) + L"x", text, Visible(text) + L"y"}))));
     },
     Visible},
    // printers
    {"PrinC",
     [](T text) {
       CLOMAdsLisp::PrinC(text);
       return Console();
     },
     Printed},
    {"PrinCOfList",
     [](T text) {
       CLOMAdsLisp::PrinC(ListOf({text, Dotted({text, 1})}));
       return Console();
     },
     [](T text) { return L"(" + Printed(text) + L" (" + Printed(text) + L" . 1))"; }},
    {"PrinCIntoBuffer", [](T text) { return InBuffer(text, 100, false); },
     [](T text) { return Quoted(text).substr(0, 50); }},
    {"PrintRecord",
     [](T text) {
       ResBuf(text.c_str()).Print(nullptr, 0);
       return Console();
     },
     Printed},
    {"PrintRecordIntoBuffer", [](T text) { return InBuffer(text, 100, true); },
     [](T text) { return Quoted(text).substr(0, 99); }},
    {"DebugPrint", DebugPrinted, [](T text) { return Quoted(text).substr(0, 50); }},
    {"PrintChain", ListPrinted, [](T text) { return L"< " + Printed(text) + L" >\n"; }},
    {"ToString", [](T text) { return Content(CLOMAdsLisp::ToString(text)); },
     [](T text) { return Quoted(text).substr(0, 2500); }},
    {"ToCString", [](T text) { return std::wstring(CLOMAdsLisp::ToCString(text)); },
     [](T text) { return Quoted(text).substr(0, 8192); }},
    {"GetAsDebugString", [](T text) { return std::wstring(CLOMAdsLispVar(text).GetAsDebugString()); },
     Quoted},
    {"EchoOfNth",
     [](T text) {
       CLOMAdsLisp::Nth(1, text);
       return Console();
     },
     [](T text) {
       return L"CLOMAdsLisp::Nth : Parameter mu\u00DF eine Liste sein !\n" + Printed(text) + L"\n";
     }},
    {"EchoOfAssoc",
     [](T text) {
       CLOMAdsLisp::Assoc(1, text);
       return Console();
     },
     [](T text) { return L"CLOMAdsLisp::Assoc : keine Assoziativ-Liste : " + Printed(text) + L"\n"; }},
    // formatter and reader
    {"FormatText", [](T text) { return Formatted(L"<%s>", text); },
     [](T text) { return L"<" + Visible(text) + L">"; }},
    {"FormatCharacter", [](T text) { return Formatted(L"%c", text); },
     [](T text) { return Visible(text).substr(0, 1); }},
    {"FormatNumber", [](T text) { return Formatted(L"%d %.1f", text); },
     [](T) -> std::wstring { return L"0 "; }},
    {"FormatAsFormat", FormattedAsFormat, nullptr},
    {"Read", ReadBare, [](T text) -> std::wstring { return Visible(text).empty() ? L"taken" : L"refused"; }},
    {"ReadQuoted", ReadQuoted, ReadableInQuotes},
    {"ReadOfValue",
     [](T text) {
       const CLOMAdsLispVar value = CLOMAdsLisp::Read(text);
       return WasRead(!value.NilP() || Visible(text).empty(), text);
     },
     [](T text) -> std::wstring { return Visible(text).empty() ? L"taken" : L"refused"; }},
    // texts and lists of them
    {"StrCase", [](T text) { return Content(CLOMAdsLisp::StrCase(text)); }, UpperCased},
    {"ReplaceText", [](T text) { return TextReplaced(text, L"new", text); },
     [](T) -> std::wstring { return L"new"; }},
    {"ReplaceByText", [](T text) { return TextReplaced(L"old", text, L"old"); }, Visible},
    {"Assoc", [](T text) { return Content(CLOMAdsLisp::Cdr(CLOMAdsLisp::Assoc(text, Pairs(text)))); },
     Visible},
    {"Member",
     [](T text) {
       return Content(CLOMAdsLisp::Car(CLOMAdsLisp::Member(text, ListOf({1, text, 2}))));
     },
     Visible},
    {"Position",
     [](T text) {
       return Number(CLOMAdsLisp::Position(text, ListOf({1, text})));
     },
     One},
    {"Index", [](T text) { return Number(CLOMAdsLisp::Index(text, Pairs(text))); }, One},
    {"Subst", [](T text) { return Content(CLOMAdsLisp::Car(CLOMAdsLisp::Subst(text, 1, ListOf({1})))); },
     Visible},
    {"Delete",
     [](T text) {
       return Number(CLOMAdsLisp::Length(CLOMAdsLisp::Delete(text, ListOf({1, text, text}))));
     },
     One},
    {"Inherit",
     [](T text) {
       return Number(CLOMAdsLisp::Length(CLOMAdsLisp::Inherit(
           ListOf({Dotted({text, 1})}), ListOf({Dotted({text, 2}), Dotted({Visible(text) + L"x", 3})}))));
     },
     [](T) -> std::wstring { return L"2"; }},
    {"InheritanceStatus",
     [](T text) {
       const CLOMAdsLispVar entries = ListOf({Dotted({text, 1})});
       return Content(CLOMAdsLisp::Car(CLOMAdsLisp::Car(CLOMAdsLisp::InheritanceStatus(entries, entries))));
     },
     Visible},
    // chains, extended data, variants
    {"ADSToLisp", FromChain, Visible},
    {"LispToADS", ToChain, Visible},
    {"LispToDXF", ThroughGroups, Visible},
    {"XData", ThroughExtendedData, Visible},
    {"OleVariant", ThroughVariant, Visible},
    {"CopyToAcadResBuf", ThroughCopies, Visible},
    {"BuildList", ThroughBuildList, Visible},
    {"MakeDXF", AsGroupOfBytes, nullptr},
    // the host
    {"ParameterAndReturn", ThroughCall, Visible},
    {"RetStr", ReturnedText, Visible},
    {"PutSym", ThroughSymbol, Visible},
    {"PutSymName", AsSymbol, SymbolOrRefusal},
    {"GetVarName", GotVariable, [](T) -> std::wstring { return L"<no text>"; }},
    {"SetVarName", [](T text) { return SetVariable(text, 1); },
     [](T text) {
       return L"CLOMAdsLispVar::SetVar : Kann Variable \"" + Visible(text) + L"\" nicht setzen ( 1 ) !\n";
     }},
    {"SetVarNameForPoint",
     [](T text) {
       return SetVariable(text, ListOf({1.0, 2.0}));
     },
     [](T text) {
       return L"CLOMAdsLispVar::SetVar : Kann Variable \"" + Visible(text) + L"\" nicht setzen !\n";
     }},
    {"SetVarRefused", [](T text) { return SetVariable(L"NOSUCH", text); },
     [](T text) {
       return L"CLOMAdsLispVar::SetVar : Kann Variable \"NOSUCH\" nicht setzen ( " + Printed(text) +
              L" ) !\n";
     }},
    {"SetVar", ThroughVariable, Visible},
    {"EntMake", MadeText, Visible},
    {"EntMod", ModifiedText, Visible},
    {"EntMakeLayer", MadeLayer, MadeOrRefused},
    {"EntSel", AskedFor, VisibleLine},
    {"GetString", Asked, VisibleLine},
    {"GetStringTyped", Typed, [](T text) { return Visible(text).substr(0, 132); }},
    {"InitGet", TypedKeyword, [](T) -> std::wstring { return L"asked"; }},
    {"SSGet", [](T text) { return Found(text, Literally(text)); }, One},
    {"SSGetPattern", [](T text) { return Found(text, L"*"); }, One},
    {"SSGetMode",
     [](T text) {
       ads_name set{};
       return Status([&] { return acedSSGet(text.c_str(), nullptr, nullptr, nullptr, set); });
     },
     Error},
    {"TblSearch", [](T text) { return Searched(L"LAYER", text); }, None},
    {"TblSearchTable", [](T text) { return Searched(text, L"0"); }, None},
    {"TblNext", [](T text) { return Status([&] { return acdbTblNext(text.c_str(), 1) == nullptr; }); }, One},
    {"TblObjName",
     [](T text) {
       ads_name name{};
       return Status([&] { return acdbTblObjName(L"LAYER", text.c_str(), name); });
     },
     Error},
    {"HandEnt",
     [](T text) {
       ads_name name{};
       return Status([&] { return acdbHandEnt(text.c_str(), name); });
     },
     Error},
    {"RegApp", Registered, [](T) -> std::wstring { return L"as said"; }},
    {"Defun", [](T text) { return Status([&] { return acedDefun(text.c_str(), 1); }); }, Error},
    // the embedded host's own
    {"Printf", PrintedByHost, Visible},
    {"Console", Written, Whole},
    {"Utf8", [](T text) { return embedded::FromUtf8(embedded::Utf8(text)); }, Replaced},
    {"Texts", ThroughText, Visible},
    {"Wildcard", [](T text) { return Number(embedded::MatchesWildcard(Visible(text), Literally(text))); },
     One},
    {"WildcardOfText", [](T text) { return Number(embedded::MatchesWildcard(L"", text + L"`,,")); }, One},
    {"AsciiDxf", [](T text) { return ThroughFile(text, embedded::DxfForm::Ascii); }, InFile},
    {"BinaryDxf", [](T text) { return ThroughFile(text, embedded::DxfForm::Binary); }, InFile},
    {"Utf8Coding", [](T text) { return Coded(text, embedded::TextCoding::Utf8()); }, InFile},
    {"PageCoding",
     [](T text) { return Coded(text, embedded::TextCoding(embedded::DxfVersion::R2000, L"ANSI_1252")); },
     InFile},
    {"DxfContent", OpenedAsContent, Refused},
    {"Open", OpenedByName, Refused},
    {"Save", SavedByName, Refused},
    {"LoadModule", Loaded, Refused},
    {"Call", CalledByName, Refused},
    {"Evaluate", Evaluated, Refused},
    {"Define", Defined, One},
};

class HostileTexts : public HostTest, public ::testing::WithParamInterface<Function> {};

// What no function says is what it says again: nothing is read that is not the text.
TEST_P(HostileTexts, AreTakenAsTheyAre) {
  const Function& function = GetParam();
  for (const HostileText& hostile : Texts()) {
    const std::wstring result = function.run(hostile.text);
    Console();
    const std::wstring expected = function.expected != nullptr        ? function.expected(hostile.text)
                                  : function.run == FormattedAsFormat ? hostile.formatted
                                                                      : function.run(hostile.text);
    Console();
    EXPECT_TRUE(result == expected) << hostile.name << ": " << Utf8(result).substr(0, 200) << "\nnot "
                                    << Utf8(expected).substr(0, 200);
    TheHost().answers.Clear();
    TheHost().CloseDrawing();
  }
}

INSTANTIATE_TEST_SUITE_P(Functions, HostileTexts, ::testing::ValuesIn(kFunctions),
                         [](const auto& made) { return std::string(made.param.name); });

}  // namespace
}  // namespace lomlisp::test::hostile_texts
