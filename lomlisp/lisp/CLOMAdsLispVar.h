// The handle on a LISP value.
#pragma once

#include <lomlisp/lisp/CLOMLispElement.h>
#include <lomlisp/lisp/DataType.h>
#include <lomlisp/platform/api.h>

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
class LOMLISP_API CLOMAdsLispVar {
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
  // The atom that ResBuf makes from the variant; an empty list for a type that it does not take.
  CLOMAdsLispVar(COleVariant variant);
  CLOMAdsLispVar(const CLOMCdrProxy& rest);          // the list without its first member
  CLOMAdsLispVar(const CLOMConsProxy& pair);         // the list with one more in front
  CLOMAdsLispVar(const CLOMReverseProxy& reversed);  // a reversed deep copy
  ~CLOMAdsLispVar() = default;

  // As SetQ: first lets the own tree go, so that `a = a` gives nil.
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): as stated.
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

  // --- Equality ---
  //
  // Silent, except where atoms cannot be compared: see ResBuf::Equal.

  // Whether two trees have the same shape (a dotted list is no list, and no node is no RTNIL atom)
  // and atoms that are equal with the tolerance `tol`, of which 0.0 means 1e-9. Compares depth-first
  // from left to right up to the first difference. Linear; subtrees that are shared, and were found
  // equal, are not compared again.
  static bool isEqual(const ConstElement& a, const ConstElement& b, double tol);
  bool Equal(const CLOMAdsLispVar& other, double tol) const;
  // The same node, both without a node, or atoms that are equal with the tolerance 0.0.
  bool Eq(const CLOMAdsLispVar& other) const;

  bool operator==(const CLOMAdsLispVar& other) const { return Equal(other, 0.0); }
  bool operator!=(const CLOMAdsLispVar& other) const { return !Equal(other, 0.0); }

  // --- Order of atoms ---
  //
  // Equal with the tolerance 0.0, else by ResBuf::Less; "greater" is neither equal nor less, so it
  // holds for atoms that have no order. False, with "CLOMAdsLispVar::operator!= : ..." from all
  // four, when one of the two is no atom.

  bool operator<(const CLOMAdsLispVar& other) const;
  bool operator<=(const CLOMAdsLispVar& other) const;
  bool operator>(const CLOMAdsLispVar& other) const;
  bool operator>=(const CLOMAdsLispVar& other) const;

  // --- Conversion between atom types ---
  //
  // Silent. They give a new atom, or share this one where it has the type already, and never fail:
  // what cannot be converted becomes 0, 0.0 or the empty text. A number in a text is decimal, with
  // a point and, as a real, an exponent, whatever the locale; what follows it is ignored.

  // RTSHORT 1 or 0: a text is true by its first character (y, Y, t, T, x, X, j, J, 1), a number
  // unless it is 0 (NaN is true); everything else is false.
  CLOMAdsLispVar MakeBool() const;
  // RTSHORT and RTINT64 as they are; otherwise an RTSHORT of the number's low 16 bits, which is
  // truncated toward zero and saturated at 32 bits if a text without a point or comma. Of a text
  // with one, and of a real, a number out of 32 bits gives the smallest one.
  CLOMAdsLispVar MakeInt() const;
  // RTREAL, RTLONG and RTINT64 as they are; otherwise an RTREAL.
  CLOMAdsLispVar MakeFloat() const;
  // RTSTR as it is; an integer's 32 low bits; the shortest text that reads back as the same real;
  // "(x y z)" with six decimals of a list of two or three numbers.
  CLOMAdsLispVar MakeString() const;
  // The greater or smaller of two values, after both were made real if one is, else integer if one
  // is, else text if one is: of two texts the longer or shorter, this one when they are as long.
  // A copy of this value otherwise.
  CLOMAdsLispVar MakeMaximum(const CLOMAdsLispVar& other) const;
  CLOMAdsLispVar MakeMinimum(const CLOMAdsLispVar& other) const;

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

  // --- From and to extended data ---
  //
  // The form of a value alone: atoms as 1000, 1040, 1070 and 1071 groups; lists, and nil, between
  // 1002 groups of braces. Linear in the tree and in the chain.

  // Appends the value at the end of `target`. False for an atom without such a code, which is left
  // out ("CLOMAdsLispVar::LispToXData : ..."), and for a dotted list, which is written as a list
  // ("LispVaribale::LispToXData : ..."); below a list both only print, and the result is true.
  bool LispToXData(ADSList& target) const;
  static bool LispToXData(const ConstElement& element, ADSList& target);
  // Makes the value what the chain says: one group or one list in braces; nil for null. The chain
  // is only read. On failure the value is nil: false, with "ListVar::XDataToLisp: ..." when
  // groups are left over, silent for wrong braces.
  bool XDataToLisp(const resbuf* chain);
  // Reads one item from `cur` on, moves it behind what it has read, and fills `node`, a fresh list
  // node.
  static bool XDataToLisp(const resbuf*& cur, Element& node);

  // --- To OLE ---

  // A VT_R8 of an RTREAL, RTLONG or RTINT64, a VT_I4 of an RTSHORT, a VT_BSTR of a text; VT_EMPTY
  // of everything else. Silent.
  COleVariant LispToOleVariant() const;

  // --- Reading text ---

  // One token of LISP text. The value that goes with the kind is set, the others are not.
  struct Token {
    enum Kind : int32_t { Integer, Real, String, Open, Close, Dot, Error, Nil, End };
    Kind kind;
    union {
      int32_t integer;
      double real;
      wchar_t text[100];  // without the quotes
    };
  };

  // Where the next token begins, in the text that was given last. There is one position for all
  // readers.
  static const wchar_t* s_pszNextChar;

  // Makes the value what the text says: one number, text in double quotes (there are no escapes),
  // nil, list or list with a dot in front of a last atom. Integers are RTSHORTs of the low 16 bits;
  // nil, () and a text of blanks, or null, are empty lists. The text may be the value's own. On
  // failure the value stays: false, with "LispVar::Read : ..." and the text, and in front of that
  // "CLOMAdsLispVar::Read : ..." for each token of 100 characters or more. Linear.
  bool Read(const wchar_t* text);

  // The stages of Read. getToken reads the token at s_pszNextChar and moves the position behind
  // it, or leaves it there for an error. The others start with a token that was read and leave the
  // first one behind what they read; they fill `node`, a fresh list node. Silent, but for tokens
  // that are too long.
  static void getToken(Token& token);
  static bool String_Liste(Token& token, Element& node);         // one item
  static bool String_ElementListe(Token& token, Element& node);  // items up to a closing bracket
  static bool String_Atom(Token& token, Element& node);

  // --- Printing ---

  // Prints the value as LISP text into a buffer of `size` characters, or on the command line when
  // `buffer` is null. Each piece of text may use only half of the room that is left; what does not
  // fit is cut. Size 0 writes nothing.
  void PrinC(wchar_t* buffer, size_t size) const;
  // The same for any node, behind what the buffer holds already.
  void Print(const ConstElement& element, wchar_t* buffer, size_t size) const;
  // The text with the atoms in their debugging form.
  CString GetAsDebugString() const;
  // Sets `result` to the text of a format with one value for each directive, and gives the number
  // of directives; those without a value are empty. Silent.
  //
  // Directives: d i o u x (MakeInt, 32 bits), f e (MakeFloat), s (MakeString), c (its first
  // character), also as capitals, which mean the same; %% is a percent sign. In front of them the
  // flags - + blank 0, a width, and behind a dot a precision. Four rules are peculiar: a 0 that does
  // not follow another digit is a flag, also behind the dot; integers have no precision; an s with a
  // width gives nothing; every other character in a directive is skipped. A number is cut at 2,047
  // characters.
  //
  // For a null or empty format `result` shares args[0], and 1 is given; 0, without a change, when
  // there are no values. `result` may be one of them. Linear in the format and in what is written.
  static int Format(CLOMAdsLispVar& result, const wchar_t* format,
                    const CArray<CLOMAdsLispVar, CLOMAdsLispVar>& args);

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

  // Sorts the members in ascending order of ResBuf::Less: atoms by themselves, the members of any
  // other list by their first members, their keys. Members without a key, and keys without an
  // order, end up anywhere. nil stays, silently; an atom or a dotted list stays, with
  // "CLOMAdsLispVar::Sort : ...". n log n.
  CLOMAdsLispVar& Sort();
  // Each text that is the same as one in `from` becomes the one at the same position in `to`; the
  // first that is the same counts, and positions that `to` does not have do not. Always true.
  // Linear. Silent.
  bool ReplaceTextW(const CStringArray& from, const CStringArray& to);

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
