// Values of every kind, sound and damaged, for a debugger to look at in Stop. The texts are no copies, since
// the library may have been compiled for another width of wchar_t.

#include <tests/debuggers/Stop.h>

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/resbuf/ADSList.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

// As a client derives a class of its own.
class Named : public CLOMAdsLispVar {
 public:
  explicit Named(Element root) : CLOMAdsLispVar(root) {}
  int number = 7;
};

namespace {

using Element = CLOMAdsLispVar::Element;

#ifdef LOMLISP_SANITIZED
constexpr int kLarge = 100'000;
#else
constexpr int kLarge = 1'000'000;
#endif

// --- How the values below are made ---

resbuf Record(short type) { return {nullptr, type, {}}; }

resbuf Short(short value) {
  resbuf record = Record(RTSHORT);
  record.resval.rint = value;
  return record;
}

resbuf Long(int32_t value, short type = RTLONG) {
  resbuf record = Record(type);
  record.resval.rlong = value;
  return record;
}

resbuf Int64(__int64 value) {
  resbuf record = Record(RTINT64);
  record.resval.mnInt64 = value;
  return record;
}

resbuf Real(double value, short type = RTREAL) {
  resbuf record = Record(type);
  record.resval.rreal = value;
  return record;
}

template <size_t size>
resbuf Text(wchar_t (&text)[size], short type = RTSTR) {
  resbuf record = Record(type);
  record.resval.rstring = text;
  return record;
}

resbuf Point(double x, double y, double z, short type) {
  resbuf record = Record(type);
  record.resval.rpoint[0] = x;
  record.resval.rpoint[1] = y;
  record.resval.rpoint[2] = z;
  return record;
}

resbuf Name(__int64 first, short type) {
  resbuf record = Record(type);
  record.resval.rlname[0] = first;
  record.resval.rlname[1] = 1;
  return record;
}

template <size_t size>
void Link(resbuf (&records)[size]) {
  for (size_t i = 0; i + 1 < size; ++i) records[i].rbnext = &records[i + 1];
}

template <class... Children>
Element List(Children... children) {
  const Element root = lomlisp::NewNode();
  (root->children.push_back(std::move(children)), ...);
  return root;
}

// Without the private copy of a text that an assignment makes.
Element Atom(const resbuf& record) {
  const Element root = lomlisp::NewNode();
  root->atom.restype = record.restype;
  root->atom.resval = record.resval;
  return root;
}

Element Dotted(Element root) {
  root->dotted = 1;
  return root;
}

Element One() { return Atom(Short(1)); }

Element Deep() {
  Element outer = List();
  for (int level = 0; level < kLarge; ++level) outer = List(std::move(outer));
  return outer;
}

Element Wide() {
  const Element root = List();
  for (int i = 0; i < kLarge; ++i) root->children.push_back(Atom(Short(static_cast<short>(i))));
  return root;
}

// A tree of 2 to the 60th leaves.
Element Broad() {
  Element tree = One();
  for (int level = 0; level < 60; ++level) tree = List(tree, tree);
  return tree;
}

}  // namespace

// --- Records ---

wchar_t walls[] = L"Walls";
wchar_t line[] = L"LINE";
wchar_t quoted[] = L"a \"b\" \\ \n \x01 \u00E4 \u20AC";
wchar_t beyondFirstPlane[] = {L"\U0001F600"};
wchar_t loneSurrogate[] = {wchar_t(0xD83D), L'x', 0};
wchar_t longText[kLarge];

resbuf shortRecord = Short(-7);
resbuf longRecord = Long(-70000);
resbuf int64Record = Int64(1234567890123456789);
resbuf realRecord = Real(0.1);
resbuf infiniteRecord = Real(std::numeric_limits<double>::infinity());
resbuf angleRecord = Real(1.5, RTANG);
resbuf orientationRecord = Real(2, RTORINT);
resbuf pointRecord = Point(1, 2.5, 9, RTPOINT);
resbuf point3dRecord = Point(1, 2.5, -3, RT3DPOINT);
resbuf textRecord = Text(walls);
resbuf quotedRecord = Text(quoted);
resbuf beyondRecord = Text(beyondFirstPlane);
resbuf surrogateRecord = Text(loneSurrogate);
resbuf longTextRecord = Text(longText);
resbuf nullTextRecord = Record(RTSTR);
resbuf nameRecord = Name(0x7FF0123456789A, RTENAME);
resbuf setRecord = Name(3, RTPICKS);
resbuf openRecord = Record(RTLB);
resbuf closeRecord = Record(RTLE);
resbuf dotRecord = Record(RTDOTE);
resbuf nilRecord = Record(RTNIL);
resbuf trueRecord = Record(RTT);
resbuf voidRecord = Record(RTVOID);
resbuf noneRecord = Record(RTNONE);
resbuf dxf0Record = Text(line, RTDXF0);
resbuf layerGroup = Text(walls, 8);
resbuf pointGroup = Point(1, 2, 3, 11);
resbuf realGroup = Real(2.5, 40);
resbuf flagGroup = Record(70);
resbuf colourGroup = Long(255, 420);
resbuf referenceGroup = Name(0x1F, 330);
resbuf extendedGroup = Text(walls, 1000);
resbuf noGroup = Real(2.5, 88);
resbuf unknownRecord = Record(4711);
resbuf danglingTextRecord = Record(RTSTR);
ResBuf derivedRecord(ADSResType{RTNIL});

// --- Chains ---

resbuf nested[] = {Record(RTLB),   Short(1), Record(RTLB), Text(walls),
                   Record(RTDOTE), Real(2),  Record(RTLE), Record(RTLE)};
resbuf groups[] = {Name(0x1F, -1), Text(line, 0), Text(walls, 8), Point(1, 2, 3, 10), Real(0.5, 40)};
resbuf ring[] = {Short(0), Short(1), Short(2)};
resbuf broken[] = {Short(0), Short(1), Record(4711), Record(RTSTR)};
resbuf longRecords[kLarge];

resbuf* noChain = nullptr;
resbuf* nestedChain = nested;
const resbuf* groupChain = groups;
resbuf* ringChain = ring;
resbuf* brokenChain = broken;
resbuf* longChain = longRecords;
ResBuf* derivedChain = &derivedRecord;
resbuf* danglingChain = nullptr;

ADSList emptyList;
ADSList list;
ADSList keptList;
ADSList ringList;
ADSList longList;
ADSBaseList& baseList = list;

// --- Values ---

CLOMAdsLispVar nil;
CLOMAdsLispVar nilAtom = Named(Atom(Record(RTNIL)));
CLOMAdsLispVar empty = Named(List());
CLOMAdsLispVar shortAtom = Named(Atom(Short(-7)));
CLOMAdsLispVar realAtom = Named(Atom(Real(3)));
CLOMAdsLispVar textAtom = Named(Atom(Text(quoted)));
CLOMAdsLispVar groupAtom = Named(Atom(layerGroup));
CLOMAdsLispVar unknownAtom = Named(Atom(Record(4711)));
CLOMAdsLispVar pair = Named(Dotted(List(Atom(Short(8)), Atom(Text(walls)))));
CLOMAdsLispVar dottedThree = Named(Dotted(List(One(), One(), One())));
CLOMAdsLispVar holes = Named(List(Element(), One(), Element()));
Named named(List(One(), List(Atom(Text(line)), Dotted(List(One(), List(One()))))));
CLOMAdsLispVar shared = named;
const CLOMAdsLispVar& reference = shared;
Element element = shared.New();
std::shared_ptr<const CLOMLispElement> constElement = element;
CLOMLispElement* node = element.get();
const CLOMLispElement* constNode = node;
const CLOMLispElement* noNode = nullptr;
CLOMAdsLispVar deep = Named(Deep());
CLOMAdsLispVar wide = Named(Wide());
CLOMAdsLispVar broad = Named(Broad());

// --- Damage ---

CLOMAdsLispVar released = Named(List(One()));
CLOMAdsLispVar badBlock = Named(List(One(), One()));
CLOMAdsLispVar hugeBlock = Named(List(One(), One()));
CLOMAdsLispVar badDot = Named(List(List(One()), One()));
CLOMAdsLispVar withinItself = Named(List(One()));
CLOMAdsLispVar badMember = Named(List(One(), One(), One()));
CLOMLispElement* badNode = nullptr;
// Keeps the memory of a node that is released.
std::weak_ptr<CLOMLispElement> keeper;
alignas(CLOMAdsLispVar) unsigned char dangling[sizeof(CLOMAdsLispVar)];
alignas(CLOMAdsLispVar) unsigned char garbage[sizeof(CLOMAdsLispVar)];

namespace {

// The blocks of children, whose layout is private.
struct Block {
  void* nextReleased;
  uint32_t capacity;
  uint32_t first;
  uint32_t count;
};

Block& BlockOf(const CLOMAdsLispVar& value) {
  Block* block = nullptr;
  std::memcpy(&block, static_cast<const void*>(&value.New()->children), sizeof block);
  return *block;
}

void SetAddress(void* target, size_t address) { std::memcpy(target, &address, sizeof address); }

void Prepare() {
  for (wchar_t& character : longText) character = L'x';
  for (resbuf& record : longRecords) record.restype = RTNIL;
  Link(nested);
  Link(groups);
  Link(ring);
  Link(broken);
  Link(longRecords);
  list.Add(nested, ADSCopyFlag::Adopt);
  list.GoFirst();
  list.GoNext();
  keptList.DeleteMode(ADSDeleteFlag::Keep);
  keptList.Add(groups, ADSCopyFlag::Adopt);
  keptList.GoStart();
  longList.Add(longRecords, ADSCopyFlag::Adopt);
}

void Damage() {
  const size_t nowhere = 0x10;
  SetAddress(&danglingTextRecord.resval, nowhere);
  SetAddress(&danglingChain, nowhere);
  SetAddress(&broken[3].resval, nowhere);
  SetAddress(&broken[3].rbnext, nowhere);
  ring[2].rbnext = &ring[1];
  ringList.Start()->Connect(static_cast<ResBuf*>(ringChain));
  SetAddress(&badNode, nowhere);
  std::memset(garbage, 0xDD, sizeof garbage);
  std::memcpy(dangling, static_cast<const void*>(&released), sizeof released);
  keeper = released.New();
  released.Clean();
  BlockOf(badBlock).count = 0xDDDDDDDD;
  BlockOf(hugeBlock).capacity = BlockOf(hugeBlock).count = 0xDDDDDDDD;
  badDot.New()->children[0]->dotted = 37;
  withinItself.New()->children.push_back(withinItself.New());
  new (&badMember.New()->children[1]) Element(Element(), reinterpret_cast<CLOMLispElement*>(nowhere));
}

}  // namespace

int Show(const CLOMAdsLispVar& value, CLOMAdsLispVar copy, const resbuf* chain) {
  Stop();
  return value.New() != copy.New() && chain != nullptr ? 1 : 0;
}

int main() {
  Prepare();
  Damage();
  Show(shared, pair, groups);
  // What is damaged cannot be released.
  std::_Exit(0);
}
