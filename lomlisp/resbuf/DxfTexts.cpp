#include <lomlisp/resbuf/DxfTexts.h>

#include <lomlisp/platform/suite.h>
#include <lomlisp/resbuf/BinaryData.h>

#include <new>
#include <unordered_map>
#include <unordered_set>

namespace lomlisp::dxftexts {

namespace {

struct Text {
  size_t holders = 0;
  // It stands under a code that is not for texts. Only then are copies of records of such a code
  // looked up.
  bool underForeignCode = false;
};

struct Books {
  std::unordered_map<const void*, Text> texts;
  std::unordered_set<const resbuf*> holders;
  size_t underForeignCode = 0;
};

// Never destroyed: records may outlive every other static object.
Books& TheBooks() {
  static Books* const books = new Books;
  return *books;
}

using Entry = std::unordered_map<const void*, Text>::iterator;

void AddHolder(Entry entry, const resbuf& record) {
  if (TheBooks().holders.insert(&record).second) ++entry->second.holders;
}

void Remove(Entry entry) {
  if (entry->second.underForeignCode) --TheBooks().underForeignCode;
  TheBooks().texts.erase(entry);
}

// Strikes the record off the holders. The entry of its text; none when it was no holder.
Entry Strike(const resbuf& record) {
  Books& books = TheBooks();
  if (!MayHold(record.restype) || books.holders.erase(&record) == 0) return books.texts.end();
  const Entry entry = books.texts.find(ContentOf(record));
  if (entry != books.texts.end()) --entry->second.holders;
  return entry;
}

}  // namespace

bool IsTextCode(short type) { return type == RTDXF0 || (type != RTSTR && DxfType(type) == RTSTR); }

bool Holds(const resbuf& record) { return MayHold(record.restype) && TheBooks().holders.count(&record) != 0; }

void Own(resbuf& record, short code) {
  if (ContentOf(record) == nullptr) return;
  Books& books = TheBooks();
  try {
    const Entry entry = books.texts.try_emplace(ContentOf(record)).first;
    AddHolder(entry, record);
    if (IsTextCode(code) || entry->second.underForeignCode) return;
    entry->second.underForeignCode = true;
    ++books.underForeignCode;
  } catch (const std::bad_alloc&) {
    const Entry entry = books.texts.find(ContentOf(record));
    if (entry != books.texts.end() && entry->second.holders == 0) books.texts.erase(entry);
    acad_free(ContentOf(record));
    ClearContent(record);
  }
}

void Hold(resbuf& copy) {
  Books& books = TheBooks();
  if (!MayHold(copy.restype) || books.texts.empty()) return;
  const bool textCode = IsTextCode(copy.restype);
  if (!textCode && books.underForeignCode == 0) return;
  const Entry entry = books.texts.find(ContentOf(copy));
  if (entry == books.texts.end() || (!textCode && !entry->second.underForeignCode)) return;
  try {
    AddHolder(entry, copy);
  } catch (const std::bad_alloc&) {
    ClearContent(copy);
  }
}

void Drop(const resbuf& record) {
  const Entry entry = Strike(record);
  if (entry == TheBooks().texts.end() || entry->second.holders != 0) return;
  Remove(entry);
  acad_free(ContentOf(record));
}

void Move(const resbuf& from, const resbuf& to) {
  auto holder = TheBooks().holders.extract(&from);
  if (holder.empty()) return;
  holder.value() = &to;
  TheBooks().holders.insert(std::move(holder));
}

void Release(resbuf& record) {
  const Entry entry = Strike(record);
  if (entry == TheBooks().texts.end()) return;
  if (entry->second.holders == 0)
    Remove(entry);
  else
    CopyContent(record);
}

void HandOver(resbuf& record) {
  const bool ours = Holds(record);
  if (IsTextCode(record.restype)) {
    if (ours)
      Release(record);
    else
      ClearContent(record);
  } else if (ours) {
    Drop(record);
    record.resval = {};
  }
}

}  // namespace lomlisp::dxftexts
