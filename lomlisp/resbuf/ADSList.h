// Cursors over chains of records.
#pragma once

#include <lomlisp/platform/api.h>
#include <lomlisp/resbuf/ResBuf.h>

// Whether a given chain is linked in itself, and is the list's from then on, or copied.
enum class ADSCopyFlag : int { Adopt = 0, Copy = 1 };  // every value but Copy adopts
// Whether a list releases its records when it dies or is cleared.
enum class ADSDeleteFlag : int { Ask = 0, Release = 1, Keep = 2 };

// A cursor over a chain that begins with a sentinel record of its own.
//
// Positions are records; null is behind either end. A nested list, RTLB to its RTLE, is one
// element for the element operations. A Go operation gives 1 and moves the cursor when its target
// exists, else it gives 0 and the cursor stays. When memory for the sentinel runs out, the list
// stays empty; what it is told to adopt is released.
//
// Constant time, except Last, Previous and Reverse (linear in the chain), NextElement (in the
// nested list) and PreviousElement (in the chain).
class LOMLISP_API ADSBaseList {
 public:
  ADSBaseList() { Init(); }
  ADSBaseList(const ADSBaseList&) = delete;
  ADSBaseList& operator=(const ADSBaseList&) = delete;
  ~ADSBaseList() { Destroy(); }

  ResBuf* Start() const { return start; }  // the sentinel
  ResBuf* First() const { return Next(start); }
  ResBuf* Last() const;
  ResBuf* Next(const ResBuf* record) const { return record != nullptr ? record->Next() : nullptr; }
  // The record in front; the sentinel for the first one; null for the sentinel and for a record
  // that is not in the chain.
  ResBuf* Previous(const ResBuf* record) const;
  // The record behind the element that begins at `record`, null when the chain ends there.
  ResBuf* NextElement(const ResBuf* record) const;
  // The begin of the element that ends in front of `record`; null when that is a nested list at
  // the very head of the chain. Changes nothing, but reverses the chain twice on the way.
  ResBuf* PreviousElement(const ResBuf* record);

  // The record under the cursor.
  ResBuf& Curr() const;
  int GoStart() { return Go(Start()); }
  int GoFirst() { return Go(First()); }
  int GoLast() { return Go(Last()); }
  int GoNext() { return Go(Next(current)); }
  int GoPrevious() { return Go(Previous(current)); }
  int GoNextElement() { return Go(NextElement(current)); }
  int GoPreviousElement() { return Go(PreviousElement(current)); }
  bool atStart() const { return current == start; }
  bool atFirst() const { return current == First(); }
  bool atLast() const { return Next(current) == nullptr; }

  bool isNIL() const { return First() == nullptr; }
  // The type under the cursor; RTNONE on the sentinel.
  short Type() const { return isNIL() || atStart() ? RTNONE : current->Type(); }

  // Reverses the chain in place and swaps the brackets; the cursor stays on its record.
  void Reverse();
  // Prints "< ", the records with a blank behind each, ">\n" on the command line.
  void Print() const;

  // The chain without the sentinel, for the platform. It stays the list's.
  operator resbuf*() const { return First(); }

 protected:
  void Init();
  void Destroy();  // the sentinel alone
  int Go(ResBuf* target);

  ResBuf* start = nullptr;
  ResBuf* current = nullptr;
};

// A cursor that owns its chain: records from the platform's heap, released one by one with their
// texts, those of DXF text groups included.
class LOMLISP_API ADSList : public ADSBaseList {
 public:
  ADSList() = default;
  explicit ADSList(const ADSBaseList& source) { Add(source); }  // a deep copy
  ADSList(const ADSList& source) : ADSBaseList() { Add(source); }
  ADSList(resbuf* chain, ADSCopyFlag flag) { Add(chain, flag); }
  ADSList(ResBuf* chain, ADSCopyFlag flag) { Add(chain, flag); }
  ADSList& operator=(const ADSList&) = delete;
  ~ADSList() { Destroy(); }

  // Inserts a chain behind the cursor and moves the cursor to its last record, so that repeated
  // calls append in order. Null does nothing; adopting the list's own chain, or a part of it that
  // holds the cursor or begins right behind it, is refused. An adopted
  // `resbuf` chain brings the texts of its text groups along, as chains of the platform do; of an
  // adopted ResBuf chain only those texts come that MakeDXF put there. A copy is left out from the
  // record on for which memory runs out. Linear in the inserted chain.
  void Add(ResBuf* chain, ADSCopyFlag flag);
  void Add(resbuf* chain, ADSCopyFlag flag);
  void Add(const ADSBaseList& source);  // a copy

  // The same with an RTLB in front and an RTLE behind.
  void AddAsList(ResBuf* chain, ADSCopyFlag flag);
  void AddAsList(resbuf* chain, ADSCopyFlag flag);
  void AddAsList(const ADSBaseList& source);

  // Moves the other list's chain in behind the cursor; the other list is empty afterwards. Linear in what
  // stands behind the other list's cursor.
  void Splice(ADSList& other);

  // Releases the record under the cursor, whatever the delete mode, and puts the cursor on the
  // next one, or on the one in front at the end. 0 on the sentinel, else 1. Removes a bracket
  // alone. Linear in the chain.
  int Delete();

  // Gives the mode so far and sets the new one, except for Ask. With Keep the records belong to
  // somebody else from this call on: texts are prepared for an owner who releases by type (as
  // acutRelRb does), and the list no longer touches the chain when it dies. With Release the list
  // takes the chain back.
  ADSDeleteFlag DeleteMode(ADSDeleteFlag flag);

  // Empties the list (releasing the records unless the mode is Keep); the mode is Release again.
  void Clear();

 protected:
  // A chain of copies, null for null.
  ResBuf* Copy(const ResBuf* chain) const;
  void Destroy();

 private:
  bool IsOwn(const ResBuf* chain) const;
  void Link(ResBuf* chain, ResBuf* last);
  void AddBracket(short type);

  ADSDeleteFlag deleteMode = ADSDeleteFlag::Release;
};
