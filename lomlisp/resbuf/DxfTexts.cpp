#include <lomlisp/resbuf/DxfTexts.h>

#include <lomlisp/platform/suite.h>
#include <lomlisp/resbuf/BinaryData.h>
#include <lomlisp/resbuf/ResBuf.h>
#include <lomlisp/resbuf/TextTable.h>

#include <cstddef>
#include <new>
#include <unordered_set>

namespace lomlisp::dxftexts {

namespace {

struct Books {
  TextTable texts;
  // Of the texts that have had more than one.
  std::unordered_set<const resbuf*> holders;
  // How many texts stand under a code that is not for texts. Only while there are some, copies of records of
  // such a code are looked up.
  size_t underForeignCode = 0;

  bool IsHeldBy(const HeldText& text, const resbuf& record) const {
    return text.onlyHolder != nullptr ? text.onlyHolder == &record : holders.count(&record) != 0;
  }
  // When memory runs out, std::bad_alloc, and the record is no holder.
  void AddHolder(HeldText& text, const resbuf& record) {
    if (text.holders == 0) {
      text.onlyHolder = &record;
    } else {
      if (IsHeldBy(text, record)) return;
      if (text.onlyHolder != nullptr) holders.insert(text.onlyHolder);
      text.onlyHolder = nullptr;
      holders.insert(&record);
    }
    ++text.holders;
  }
  void Remove(HeldText& text) {
    if (text.underForeignCode) --underForeignCode;
    texts.Remove(text);
  }
};

// Never destroyed: records may outlive every other static object. Where they stand takes no memory that could run
// out, since records die here that must not fail.
Books& TheBooks() {
  alignas(Books) static std::byte place[sizeof(Books)];
  static Books& books = *new (place) Books;
  return books;
}

// The text that a record holds; null when it is no holder.
HeldText* HeldBy(const resbuf& record) {
  if (!ResBuf::MayHoldText(record.restype)) return nullptr;
  Books& books = TheBooks();
  HeldText* const text = books.texts.Find(ContentOf(record));
  return text != nullptr && books.IsHeldBy(*text, record) ? text : nullptr;
}

// Strikes the record off the holders of its text. The text, which may have no holder left; null when the
// record was no holder.
HeldText* Strike(const resbuf& record) {
  HeldText* const text = HeldBy(record);
  if (text == nullptr) return nullptr;
  if (text->onlyHolder != nullptr)
    text->onlyHolder = nullptr;
  else
    TheBooks().holders.erase(&record);
  --text->holders;
  return text;
}

}  // namespace

bool IsTextCode(short type) { return type == RTDXF0 || (type != RTSTR && DxfType(type) == RTSTR); }

bool Holds(const resbuf& record) { return HeldBy(record) != nullptr; }

void Own(resbuf& record, short code) {
  if (ContentOf(record) == nullptr) return;
  Books& books = TheBooks();
  try {
    HeldText& text = books.texts.FindOrAdd(ContentOf(record));
    books.AddHolder(text, record);
    if (IsTextCode(code) || text.underForeignCode) return;
    text.underForeignCode = true;
    ++books.underForeignCode;
  } catch (const std::bad_alloc&) {
    // Nobody else's, unless it is in the books.
    if (books.texts.Find(ContentOf(record)) == nullptr) acad_free(ContentOf(record));
    ClearContent(record);
  }
}

void Hold(resbuf& copy) {
  Books& books = TheBooks();
  if (!ResBuf::MayHoldText(copy.restype) || books.texts.IsEmpty()) return;
  const bool textCode = IsTextCode(copy.restype);
  if (!textCode && books.underForeignCode == 0) return;
  HeldText* const text = books.texts.Find(ContentOf(copy));
  if (text == nullptr || (!textCode && !text->underForeignCode)) return;
  try {
    books.AddHolder(*text, copy);
  } catch (const std::bad_alloc&) {
    ClearContent(copy);
  }
}

void Drop(const resbuf& record) {
  HeldText* const text = Strike(record);
  if (text == nullptr || text->holders != 0) return;
  TheBooks().Remove(*text);
  acad_free(ContentOf(record));
}

void Move(const resbuf& from, const resbuf& to) {
  HeldText* const text = HeldBy(from);
  if (text == nullptr) return;
  if (text->onlyHolder != nullptr) {
    text->onlyHolder = &to;
    return;
  }
  auto holder = TheBooks().holders.extract(&from);
  holder.value() = &to;
  TheBooks().holders.insert(std::move(holder));
}

void Release(resbuf& record) {
  HeldText* const text = Strike(record);
  if (text == nullptr) return;
  if (text->holders == 0)
    TheBooks().Remove(*text);
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
