// RapidJSON with its pool allocator, and SSE2 for blanks and plain text. Values are never freed one by one.

#define RAPIDJSON_SSE2
#define RAPIDJSON_HAS_STDSTRING 1

#include <bench/peers/Content.h>
#include <bench/peers/Made.h>
#include <lomlisp/platform/suite.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace {

using Value = rapidjson::Value;
using rapidjson::Document;

void Add(const Value& value, Digest& digest) {
  if (value.IsArray()) {
    digest.Open();
    for (const Value& member : value.GetArray()) Add(member, digest);
    digest.Close();
  } else if (value.IsString()) {
    digest.Characters(std::string_view(value.GetString(), value.GetStringLength()));
  } else if (value.IsDouble()) {
    digest.Real(value.GetDouble());
  } else {
    digest.Integer(value.GetInt64());
  }
}

Digest DigestOf(const std::unique_ptr<Document>& document) {
  Digest digest;
  Add(*document, digest);
  return digest;
}

std::unique_ptr<Document> Parsed(const std::string& text) {
  auto document = std::make_unique<Document>();
  document->Parse(text.data(), text.size());
  return document;
}

std::shared_ptr<Document> Items(int count) { return Parsed(JsonText(count)); }

Workload Read(int size) {
  return Making([text = JsonText(size)] { return Parsed(text); }, DigestOf);
}

Workload Print(int size) {
  auto buffer = std::make_shared<rapidjson::StringBuffer>();
  Workload work;
  work.run = [items = Items(size), buffer] {
    buffer->Clear();
    rapidjson::Writer<rapidjson::StringBuffer> writer(*buffer);
    items->Accept(writer);
  };
  work.check = [buffer] { return DigestOfPrinted(std::string_view(buffer->GetString(), buffer->GetSize())); };
  return work;
}

Workload CopyAndEqual(int size) {
  return Making(
      [items = Items(size)] {
        auto copy = std::make_unique<Document>();
        copy->CopyFrom(*items, copy->GetAllocator());
        Require(*copy == *items, "a copy is equal");
        return copy;
      },
      DigestOf);
}

Workload Release(int size) {
  auto document = std::make_shared<std::unique_ptr<Document>>();
  auto digest = std::make_shared<Digest>();
  Workload work;
  work.prepare = [=] {
    *document = Parsed(JsonText(size));
    *digest = DigestOf(*document);
  };
  work.run = [=] { document->reset(); };
  work.check = [=] { return *digest; };
  return work;
}

// --- Memory: beside the slot that holds the value ---

using Pool = Document::AllocatorType;

Value Integer(int number, Pool&) { return Value(number); }
Value Text(int, Pool& pool) { return Value(Narrow(kMemoryText), pool); }

template <class... Members>
Value ArrayOf(Pool& pool, Members&&... members) {
  Value array(rapidjson::kArrayType);
  array.Reserve(sizeof...(members), pool);
  (array.PushBack(Value(std::forward<Members>(members)), pool), ...);
  return array;
}

Value Pair(int number, Pool& pool) { return ArrayOf(pool, number, 1); }

Value AtomOf(const resbuf& record, Pool& pool) {
  switch (DxfType(record.restype)) {
    case RTSTR:
      return Value(Narrow(record.resval.rstring), pool);
    case RTREAL:
      return Value(record.resval.rreal);
    case RTENAME:
      return Value(static_cast<int64_t>(record.resval.rlname[0]));
    default:
      return Value(record.resval.rint);
  }
}

Value GroupOf(const resbuf& record, Pool& pool) {
  const int code = record.restype;
  const double* const point = record.resval.rpoint;
  if (DxfType(record.restype) == RT3DPOINT) return ArrayOf(pool, code, point[0], point[1], point[2]);
  return ArrayOf(pool, code, AtomOf(record, pool));
}

Value Entity(int, Pool& pool) {
  Value groups(rapidjson::kArrayType);
  groups.Reserve(12, pool);
  for (const resbuf* record = TwelveGroups(); record != nullptr; record = record->rbnext)
    groups.PushBack(GroupOf(*record, pool), pool);
  return groups;
}

Workload Memory(int size, Value (*make)(int number, Pool& pool)) {
  auto document = std::make_shared<std::unique_ptr<Document>>();
  Workload work;
  work.prepare = [=] {
    *document = std::make_unique<Document>();
    (*document)->SetArray().Reserve(static_cast<rapidjson::SizeType>(size), (*document)->GetAllocator());
  };
  work.heapBytes = [=] { return (*document)->GetAllocator().Size(); };
  work.run = [=] {
    Document& values = **document;
    for (int i = 0; i < size; ++i) values.PushBack(make(i, values.GetAllocator()), values.GetAllocator());
  };
  work.check = [=] {
    Digest digest;
    for (const Value& value : (*document)->GetArray()) Add(value, digest);
    return digest;
  };
  return work;
}

}  // namespace

Workload MakeWorkload(const std::string& row, int size) {
  static const std::map<std::string, std::function<Workload(int)>> rows{
      {"read", Read},
      {"print", Print},
      {"print-debug", Print},
      {"copy-equal", CopyAndEqual},
      {"release", Release},
      {"memory-integer", [](int n) { return Memory(n, Integer); }},
      {"memory-text", [](int n) { return Memory(n, Text); }},
      {"memory-pair", [](int n) { return Memory(n, Pair); }},
      {"memory-entity", [](int n) { return Memory(n, Entity); }},
  };
  const auto found = rows.find(row);
  if (found == rows.end()) throw std::invalid_argument("no such row: " + row);
  return found->second(size);
}
