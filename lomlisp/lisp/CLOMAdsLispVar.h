// The handle on a LISP value.
#pragma once

#include <lomlisp/lisp/CLOMLispElement.h>
#include <lomlisp/lisp/DataType.h>

#include <memory>
#include <string>

class ADSList;
class CLOMCdrProxy;
class CLOMConsProxy;
class CLOMReverseProxy;

// A LISP value: a handle on a shared tree of nodes, or on none, which is nil.
//
// Copying a handle shares the tree in constant time; a change in place made through one handle is
// seen through every other. The members change their own handle, and the tree only where it is
// said. On bad input a member prints its message on the command line, leaves the value as it was
// and gives 0, false or itself; std::bad_alloc is the only exception. Nesting depth costs heap,
// never stack. All use is on the one thread that runs LISP.
class CLOMAdsLispVar {
 public:
  using Element = std::shared_ptr<CLOMLispElement>;
  using ConstElement = std::shared_ptr<const CLOMLispElement>;

  // --- Construction: one new atom, unless it is said otherwise ---

  CLOMAdsLispVar() = default;                                 // nil
  CLOMAdsLispVar(const CLOMAdsLispVar& value) = default;      // shares the tree
  CLOMAdsLispVar(CLOMAdsLispVar&& value) noexcept = default;  // the source becomes nil
  CLOMAdsLispVar(short value);                                // RTSHORT
  CLOMAdsLispVar(unsigned short value);                       // RTSHORT, the same 16 bits
  CLOMAdsLispVar(int value);                                  // RTSHORT, the low 16 bits
  CLOMAdsLispVar(unsigned int value);                         // RTSHORT, the low 16 bits
  CLOMAdsLispVar(long value);                                 // RTLONG, the low 32 bits
  CLOMAdsLispVar(unsigned long value);                        // RTSHORT, the low 16 bits
  CLOMAdsLispVar(__int64 value);                              // RTINT64
  CLOMAdsLispVar(unsigned __int64 value);                     // RTSHORT, the low 16 bits
  CLOMAdsLispVar(double value);                               // RTREAL
  CLOMAdsLispVar(const wchar_t* text);                        // RTSTR, a copy; nil for null
  CLOMAdsLispVar(CString& text);                              // RTSTR, a copy
  CLOMAdsLispVar(const CString& text);                        // RTSTR, a copy
  CLOMAdsLispVar(const std::wstring& text);                   // RTSTR, a copy up to a zero
  CLOMAdsLispVar(const double point[3]);                      // a list of three reals; nil for null
  CLOMAdsLispVar(const __int64 name[2]);                      // RTENAME; nil for null
  CLOMAdsLispVar(resbuf* chain);                              // as ADSToLisp
  CLOMAdsLispVar(const CLOMCdrProxy& rest);                   // the list without its first member
  CLOMAdsLispVar(const CLOMConsProxy& pair);                  // the list with one more in front
  CLOMAdsLispVar(const CLOMReverseProxy& reversed);           // a reversed deep copy
  ~CLOMAdsLispVar() = default;

  // As SetQ: first lets the own tree go, so that `a = a` gives nil.
  CLOMAdsLispVar& operator=(const CLOMAdsLispVar& value) { return SetQ(value); }
  // Takes the tree over; the source becomes nil, except in `a = std::move(a)`, which does nothing.
  CLOMAdsLispVar& operator=(CLOMAdsLispVar&& value) noexcept;

  // --- The value itself ---

  // A second reference to the root node; empty for nil.
  Element New() const { return m_element; }
  // Makes the value nil. Linear in the nodes that nobody else shares.
  void Clean() { m_element.reset(); }

  // The record of an atom itself: a change through it changes the shared node. For a list prints
  // "CLOMAdsLispVar::GetAtom : Kein Atom : Liste !", the value and a newline, and gives one static
  // record, at first RTSHORT 0, that all failing calls share.
  ResBuf& GetAtom() const;
  // The words of an entity name or a selection set. Otherwise zeros and
  // "CLOMAdsLispVar::GetEName() : ...".
  void GetName(__int64 name[2]) const;
  // The coordinates of a list of two or three numbers, z = 0 for two. Otherwise zeros and
  // "CLOMAdsLispVar::GetPoint() : Kein Punkt !".
  void GetPoint(double point[3]) const;
  // The same, but silent, and without a change when the node is no point.
  static void GetPoint(const ConstElement& element, double point[3]);
  // Copies the text of a string atom into a buffer of `len` characters. Cuts it, with
  // "CLOMAdsLispVar::GetString() : String zu ...", to len-1 characters. Gives the empty text for a value that
  // is no string ("... : Kein String !"); writes nothing for a null or empty buffer
  // ("CLOMAdsLispVar::GetString : Ziel-String hat ...").
  void GetString(wchar_t* buffer, size_t len) const;

  // --- Predicates on a node ---
  //
  // Silent and in constant time, except isAtomList (linear in the members). An atom of a type
  // means exactly that type, not a DXF code with that base type.

  static bool isNull(const ConstElement& element);  // nil: no node, or an RTNIL atom
  static bool isAtom(const ConstElement& element);
  static bool isList(const ConstElement& element);       // everything but an atom, so nil too
  static bool isInt(const ConstElement& element);        // RTSHORT, RTINT64
  static bool isLong(const ConstElement& element);       // RTLONG
  static bool isInt64(const ConstElement& element);      // RTINT64
  static bool isReal(const ConstElement& element);       // RTREAL, RTLONG, RTINT64
  static bool isNumber(const ConstElement& element);     // RTREAL, RTLONG, RTINT64, RTSHORT
  static bool isString(const ConstElement& element);     // RTSTR
  static bool isEName(const ConstElement& element);      // RTENAME
  static bool isPickSet(const ConstElement& element);    // RTPICKS
  static bool isAtomList(const ConstElement& element);   // a proper list, possibly empty, of atoms
  static bool isPoint(const ConstElement& element);      // a proper list of two or three numbers
  static bool isAssocList(const ConstElement& element);  // nil, or any proper list
  // nil, a proper list, or a dotted list whose second member is a proper list, as in (a . (b c)).
  static bool isRealList(const ConstElement& element);

  // --- Predicates on the value ---

  bool ListP() const;
  bool AtomP() const;
  bool NilP() const;
  bool NumberP() const;
  bool IntP() const;
  bool LongP() const;
  bool Int64P() const;
  bool RealP() const;
  bool StringP() const;
  bool ENameP() const;
  bool PickSetP() const;
  bool PointP() const;
  bool AtomListP() const;
  bool RealListP() const;
  bool AssocListP() const;
  // A number of at most 1e-9. False and "CLOMAdsLispVar::ZeroP : ..." for anything else.
  bool ZeroP() const;
  // The first that holds of real, int, string, list, pick set and entity name; dtUnknown, with
  // "CLOMAdsLispVar::Type : ...", for anything else.
  lomlisp::datatype_t Type() const;

  // --- From and to chains of records ---
  //
  // Linear in the chain and in the tree.

  // Makes the value what the chain says: one atom, one bracketed list, or one run of DXF groups,
  // which becomes a list of (code . value) pairs; nil for null. The chain is only read; it may be
  // the value's own record. On failure the value is nil: false, with
  // "ListVar::ADSToLisp: malformed ADS-Liste" when records are left over, with
  // "LispVar::ADSToLisp : invalid type Nr. ..." for an unknown type, silent for wrong brackets.
  bool ADSToLisp(const resbuf* chain);

  // The stages of ADSToLisp. Each reads from `cur` on, moves it behind what it has read, and fills
  // `node`, a fresh list node, or resets it to nil. `flag` is handed down and changes nothing.
  static bool ADS_Liste(const resbuf*& cur, Element& node, bool flag);  // one item
  static bool ADS_ElementListe(const resbuf*& cur, Element& node,
                               bool flag);  // items up to a closing bracket
  static bool ADS_DXFList_Or_Atom(const resbuf*& cur, Element& node, bool flag);
  static bool ADS_Atom(const resbuf* record, Element& node);  // always true

  // Appends the value at the end of `target` and gives `target`. Lists are written in brackets,
  // with an RTDOTE behind the first member of a dotted list. A record for which memory runs out is
  // left out.
  ADSList& LispToADS(ADSList& target) const;
  // The same, but every list of DXF groups is written as a bare run of records under their codes.
  ADSList& LispToDXF(ADSList& target) const;
  static void LispToADS(const ConstElement& element, ADSList& target, bool dxf);

  // Append all groups of a list, one group, or the extended data of one application. On false,
  // what was written up to there stays in the target. Silent.
  static bool LispToDXFList(const ConstElement& element, ADSList& target);
  static bool LispToDXFElement(const ConstElement& element, ADSList& target);
  static bool LispToXDataList(const ConstElement& element, ADSList& target);

  // --- Printing ---

  // Prints the value as LISP text into a buffer of `size` characters, or on the command line when
  // `buffer` is null. Each piece of text may use only half of the room that is left; what does not
  // fit is cut. Size 0 writes nothing.
  void PrinC(wchar_t* buffer, size_t size) const;
  // The same for any node, behind what the buffer holds already.
  void Print(const ConstElement& element, wchar_t* buffer, size_t size) const;
  // The text with the atoms in their debugging form.
  CString GetAsDebugString() const;

  // --- Access: the handle moves on to a part of its tree, which stays shared ---

  CLOMAdsLispVar&
  Car();  // the first member; nil of an empty list. "CLOMAdsLispVar::Car : ..." for nil and atoms
  // The rest. A list that only this handle owns loses its first member in place unless `forceCopy`;
  // otherwise a new proper list shares the members (linear). nil stays nil, silently; an atom
  // stays, with "CLOMAdsLispVar::Cdr : ...".
  CLOMAdsLispVar& Cdr(bool forceCopy);
  // The member at a position from 0; nil at exactly the length. Unchanged, with
  // "CLOMAdsLispVar::Nth : ..." and the value, behind that and for what is no proper list.
  CLOMAdsLispVar& Nth(unsigned int n);
  // The last member of a list of two or more; a list of one stays as it is. Unchanged, with
  // "CLOMAdsLispVar::Last : ...", for nil and for what is no proper list.
  CLOMAdsLispVar& Last();
  // Becomes a deep copy of the members 0 to n: Head(0) is nil, Head(-1) copies all.
  CLOMAdsLispVar& Head(int n);
  // The number of members. 0 with "CLOMAdsLispVar::Length: ..." for what is no proper list.
  unsigned __int64 Length() const;
  // Makes `head` a deep copy of the node with its first n+1 children (all for a negative n, nil
  // for 0) and `rest` nil. Linear in what is copied. Always true.
  static bool CopyHead(const ConstElement& source, Element& head, Element& rest, int n);

  // --- Construction from values ---

  // This value in front of `second`: a new list that shares the members of a list, a dotted pair
  // with an atom, a list of two with a dotted list. Linear in the members of `second`.
  CLOMAdsLispVar& Cons(const CLOMAdsLispVar& second);
  // The same, but a proper list takes this value into its own node, in constant time, seen by
  // everybody who shares that node. When this value contains that node, a deep copy of it is taken.
  CLOMAdsLispVar& Cons(CLOMAdsLispVar&& second);
  CLOMAdsLispVar& List();  // a list with this value as its only member
  // Shares the members of `b` at the end: in place when only this handle owns its list, else on a
  // deep copy. nil takes `b` itself; an empty list `b` becomes one more member. Unchanged, with
  // "CLOMAdsLispVar::Append : Keine Liste !", unless both are proper lists.
  CLOMAdsLispVar& Append(const CLOMAdsLispVar& b);
  CLOMAdsLispVar& NConc(const CLOMAdsLispVar& b) { return Append(b); }
  // Reverses the members: of a deep copy, or in place for everybody who shares the list. nil stays
  // nil, silently; what is no proper list stays, with "CLOMAdsLispVar::Reverse : ...".
  CLOMAdsLispVar& Reverse(bool forceCopy);

  // --- Changes in place, seen by everybody who shares the list ---
  //
  // nil and atoms stay, with "CLOMAdsLispVar::RplaCa : ..." or "... ::RplaCd : ...".

  // Puts the members of a deep copy of `value` in the place of the first member (an atom has none).
  CLOMAdsLispVar& RplaCa(const CLOMAdsLispVar& value);
  // The same in the place of the last member; a dotted list gets the copy itself as its cdr.
  CLOMAdsLispVar& RplaCd(const CLOMAdsLispVar& value);

  // Lets the own tree go, then shares the one of `value`.
  CLOMAdsLispVar& SetQ(const CLOMAdsLispVar& value);

  // --- Arguments and result of the LISP function that is being called ---

  // Becomes the list of the arguments, an empty list without any. False and nil when they cannot
  // be converted.
  bool getArgs();
  // Hands the value to LISP as the function's result; true when LISP took it. A list whose only
  // member is a list is wrapped once more, because LISP would unwrap it, unless the LISP symbol
  // LOM_RETURNFLAG is set.
  bool ads_return() const;

  // --- LISP symbols and system variables ---
  //
  // True when the platform agreed. The name may be the value's own text.

  bool GetSym(const wchar_t* name);        // nil on failure
  bool PutSym(const wchar_t* name) const;  // "LOM_LispVariable::PutSym : ..." on failure
  bool GetVar(const wchar_t* name);        // nil on failure
  // Takes an atom or a list of two or three numbers; "CLOMAdsLispVar::SetVar : ..." on failure.
  bool SetVar(const wchar_t* name) const;

 protected:
  CLOMAdsLispVar(Element& element) : m_element(element) {}  // shares the node

 private:
  Element m_element;
};
