// The LISP functions on values.
#pragma once

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/listops/Proxies.h>
#include <lomlisp/platform/api.h>

// Static functions named after the LISP functions that they imitate. Each copies the handle of its
// argument and applies the member of the same name to the copy, so arguments stay as they are,
// except where it is said otherwise. On bad input they print a message that begins with
// "CLOMAdsLisp::", often followed by the argument, and give nil or 0. Cost and sharing are those
// of the member.
class LOMLISP_API CLOMAdsLisp {
 public:
  using datatype_t = lomlisp::datatype_t;
  using enum lomlisp::datatype_t;

  // The shared nil: an empty handle from load to unload.
  static const CLOMAdsLispVar Nil;
  static CLOMAdsLispVar nil() { return Nil; }

  // --- Predicates ---

  static bool ListP(const CLOMAdsLispVar& value) { return value.ListP(); }
  static bool AtomP(const CLOMAdsLispVar& value) { return value.AtomP(); }
  static bool NilP(const CLOMAdsLispVar& value) { return value.NilP(); }
  static bool NumberP(const CLOMAdsLispVar& value) { return value.NumberP(); }
  static bool IntP(const CLOMAdsLispVar& value) { return value.IntP(); }
  static bool RealP(const CLOMAdsLispVar& value) { return value.RealP(); }
  static bool StringP(const CLOMAdsLispVar& value) { return value.StringP(); }
  static bool ENameP(const CLOMAdsLispVar& value) { return value.ENameP(); }
  static bool PickSetP(const CLOMAdsLispVar& value) { return value.PickSetP(); }
  static bool PointP(const CLOMAdsLispVar& value) { return value.PointP(); }
  static bool AtomListP(const CLOMAdsLispVar& value) { return value.AtomListP(); }
  static bool RealListP(const CLOMAdsLispVar& value) { return value.RealListP(); }
  static bool AssocListP(const CLOMAdsLispVar& value) { return value.AssocListP(); }
  static bool ZeroP(const CLOMAdsLispVar& value) { return value.ZeroP(); }
  static datatype_t Type(const CLOMAdsLispVar& value) { return value.Type(); }

  // --- Equality ---

  static bool Equal(const CLOMAdsLispVar& a, const CLOMAdsLispVar& b, double tol) { return a.Equal(b, tol); }
  static bool Eq(const CLOMAdsLispVar& a, const CLOMAdsLispVar& b) { return a.Eq(b); }

  // --- Texts ---

  // What the text of a string atom says; nil when it cannot be read. See CLOMAdsLispVar::Read.
  static CLOMAdsLispVar Read(const CLOMAdsLispVar& text);
  // A new string atom with the upper-case form of each character, by Unicode's one-to-one mapping
  // and whatever the locale.
  static CLOMAdsLispVar StrCase(const CLOMAdsLispVar& text);

  // --- Printing ---

  // Prints on the command line and gives the value.
  static CLOMAdsLispVar PrinC(const CLOMAdsLispVar& value);
  // The text as a string atom, printed into a buffer of 5,000 characters.
  static CLOMAdsLispVar ToString(const CLOMAdsLispVar& value);
  // The text, printed into a buffer of 16,384 characters.
  static CString ToCString(const CLOMAdsLispVar& value);

  // --- Access ---

  static CLOMAdsLispVar Car(const CLOMAdsLispVar& list);
  static CLOMCdrProxy Cdr(const CLOMAdsLispVar& list);
  // Behind the end the whole list comes back, after the member's message; nil is not accepted.
  static CLOMAdsLispVar Nth(unsigned int n, const CLOMAdsLispVar& list);
  static CLOMAdsLispVar Nth(unsigned int n, const CLOMReverseProxy& reversed);  // from the end
  static CLOMAdsLispVar Last(const CLOMAdsLispVar& list);
  static CLOMAdsLispVar Head(int n, CLOMAdsLispVar list) { return list.Head(n); }
  static unsigned __int64 Length(const CLOMAdsLispVar& list);

  // --- Construction ---

  static CLOMConsProxy Cons(const CLOMAdsLispVar& first, const CLOMAdsLispVar& second) {
    return CLOMConsProxy(first, second);
  }
  // A new list that shares the values as its members.
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                             const CLOMAdsLispVar& v4);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                             const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                             const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                             const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                             const CLOMAdsLispVar& v7);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                             const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                             const CLOMAdsLispVar& v7, const CLOMAdsLispVar& v8);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                             const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                             const CLOMAdsLispVar& v7, const CLOMAdsLispVar& v8, const CLOMAdsLispVar& v9);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                             const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                             const CLOMAdsLispVar& v7, const CLOMAdsLispVar& v8, const CLOMAdsLispVar& v9,
                             const CLOMAdsLispVar& v10);
  static CLOMAdsLispVar List(const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2, const CLOMAdsLispVar& v3,
                             const CLOMAdsLispVar& v4, const CLOMAdsLispVar& v5, const CLOMAdsLispVar& v6,
                             const CLOMAdsLispVar& v7, const CLOMAdsLispVar& v8, const CLOMAdsLispVar& v9,
                             const CLOMAdsLispVar& v10, const CLOMAdsLispVar& v11);
  // A bare chain of items as one list. The chain is the caller's, and is afterwards as it was.
  static CLOMAdsLispVar List(resbuf* chain);
  // A new list; nil, with "CLOMAdsLisp::Append : keine Liste !", unless both are proper lists.
  static CLOMAdsLispVar Append(const CLOMAdsLispVar& a, const CLOMAdsLispVar& b);
  static CLOMAdsLispVar NConc(CLOMAdsLispVar& a, const CLOMAdsLispVar& b) {
    return a.NConc(b);
  }  // changes `a`
  static CLOMReverseProxy Reverse(const CLOMAdsLispVar& list);

  // --- Changes in place: the caller's list is changed, for everybody who shares it ---

  static CLOMAdsLispVar RplaCa(CLOMAdsLispVar& list, const CLOMAdsLispVar& value) {
    return list.RplaCa(value);
  }
  static CLOMAdsLispVar RplaCd(CLOMAdsLispVar& list, const CLOMAdsLispVar& value) {
    return list.RplaCd(value);
  }

  // Sorts the caller's list itself, and gives it.
  static CLOMAdsLispVar Sort(const CLOMAdsLispVar& list);

  // --- Editing by position and by value ---
  //
  // They give a new list, and nil when it has no members. Positions count from 0. Where it is said
  // that a list is edited as a copy, its members are deep copies; a value that is put in is shared.
  // A list (a . (b c)) counts as (a b c). Linear.

  // A copy with `value` in front of member n, or at the end for n = the length; in front of all for
  // a negative n. nil, with "CLOMAdsLisp::AddNth : ...", behind the end and for what is no list.
  static CLOMAdsLispVar AddNth(int n, const CLOMAdsLispVar& value, const CLOMAdsLispVar& list);
  // A copy without member n, whole for a negative n. nil, with "CLOMAdsLisp::DeleteNth : ...", from
  // the end on and for what is no list.
  static CLOMAdsLispVar DeleteNth(int n, const CLOMAdsLispVar& list);
  static CLOMAdsLispVar DeleteNth(int n, const CLOMAdsLispVar& /*ignored*/, const CLOMAdsLispVar& list) {
    return DeleteNth(n, list);
  }
  // A copy with `value` in the place of member n; in front of all members for a negative n. nil,
  // with "CLOMAdsLisp::SubstNth : ...", from the end on and for what is no list.
  static CLOMAdsLispVar SubstNth(int n, const CLOMAdsLispVar& value, const CLOMAdsLispVar& list);
  // The members of both lists, shared: those of `children` in front of member n of `list`, in front
  // of all for a negative n, at the end for one behind it. nil, silently, for what is no list.
  static CLOMAdsLispVar Insert(CLOMAdsLispVar list, const CLOMAdsLispVar& children, int n);
  // A copy with `newValue` in the place of each member that equals `oldValue`; lists within the list
  // are not searched. nil, with "CLOMAdsLisp::Subst : ...", for what is no list.
  static CLOMAdsLispVar Subst(const CLOMAdsLispVar& newValue, const CLOMAdsLispVar& oldValue,
                              const CLOMAdsLispVar& list);
  // The members that do not equal `value`, shared, possibly none; nil for an empty list. nil, with
  // "CLOMAdsLisp::Subst : ...", for what is no list.
  static CLOMAdsLispVar Delete(const CLOMAdsLispVar& value, const CLOMAdsLispVar& list);

  // --- Search: by structural equality with the tolerance 0.0 ---
  //
  // The lists are only read. Linear up to what is found.

  // The first member of `alist` whose first member equals `key`, shared; nil when there is none.
  // Atoms are skipped. nil, with "CLOMAdsLisp::Assoc : ..." and the value, for what is no proper list.
  static CLOMAdsLispVar Assoc(const CLOMAdsLispVar& key, CLOMAdsLispVar alist);
  // The list from the first member on that equals `value`: the list itself, or a new one that shares
  // the members; nil when there is none. nil, with "CLOMAdsLisp::Member : ...", for what is no list.
  static CLOMAdsLispVar Member(const CLOMAdsLispVar& value, CLOMAdsLispVar list);
  // The position of the first member that equals `value`, or -1. -1, with
  // "CLOMAdsLisp::Position : ...", for what is no list.
  static int Position(const CLOMAdsLispVar& value, CLOMAdsLispVar list);
  // The position of the first member whose first member equals `key`, or -1. A member that is an
  // atom or nil prints the message of Car and has the key nil. -1, with "CLOMAdsLisp::Index: ..." and
  // the value, for what is no proper list.
  static int Index(CLOMAdsLispVar key, CLOMAdsLispVar alist);

  // --- Association lists in ascending order of their keys ---
  //
  // One merge from the greatest key down; lists in another order give what that merge gives. The
  // order of keys is that of CLOMAdsLispVar::operator<. Keys and entries are shared. An empty list
  // counts as nil. nil, with "CLOMAdsLisp::Inherit : ..." or "... ::InheritanceStatus : ...", for
  // what is no proper list. Linear.

  // The entries of both; of two with the same key the one of `own`. The other list itself when one
  // is nil.
  static CLOMAdsLispVar Inherit(const CLOMAdsLispVar& own, const CLOMAdsLispVar& inherited);
  // (key . status) for each key: 2 only in `own`, 1 in both, 0 only in `inherited`.
  static CLOMAdsLispVar InheritanceStatus(const CLOMAdsLispVar& own, const CLOMAdsLispVar& inherited);

  // --- Assignment: writes `target` and gives `value` ---
  //
  // The atom targets use the checked casts of ResBuf, which print on a mismatch and give 0 or null.

  static CLOMAdsLispVar SetQ(short& target, const CLOMAdsLispVar& value);
  static CLOMAdsLispVar SetQ(int& target, const CLOMAdsLispVar& value);
  static CLOMAdsLispVar SetQ(unsigned int& target, const CLOMAdsLispVar& value);
  static CLOMAdsLispVar SetQ(long& target, const CLOMAdsLispVar& value);
  static CLOMAdsLispVar SetQ(double& target, const CLOMAdsLispVar& value);
  static CLOMAdsLispVar SetQ(__int64& target, const CLOMAdsLispVar& value);
  // The atom's own text, valid while the value's tree lives.
  static CLOMAdsLispVar SetQ(const wchar_t*& target, const CLOMAdsLispVar& value);
  static CLOMAdsLispVar SetQ(CString& target, const CLOMAdsLispVar& value);       // "" for no text
  static CLOMAdsLispVar SetQ(std::wstring& target, const CLOMAdsLispVar& value);  // "" for no text
  // A text is true when it is not empty, an RTSHORT or RTINT64 when it is not 0; any other value
  // leaves the target alone.
  static CLOMAdsLispVar SetQ(bool& target, const CLOMAdsLispVar& value);
  static CLOMAdsLispVar SetQ(wchar_t* buffer, unsigned __int64 size,
                             const CLOMAdsLispVar& value);                     // as GetString
  static CLOMAdsLispVar SetQ(double target[3], const CLOMAdsLispVar& value);   // as GetPoint
  static CLOMAdsLispVar SetQ(__int64 target[2], const CLOMAdsLispVar& value);  // as GetName
  // Shares the tree; SetQ(x, x) does nothing.
  static CLOMAdsLispVar SetQ(CLOMAdsLispVar& target, const CLOMAdsLispVar& value);
  // Give `target`. They work in place, for everybody who shares the list, when the target is the
  // very list (for Cons: the second value) of the proxy.
  static CLOMAdsLispVar SetQ(CLOMAdsLispVar& target, const CLOMCdrProxy& rest);
  static CLOMAdsLispVar SetQ(CLOMAdsLispVar& target, const CLOMConsProxy& pair);
  static CLOMAdsLispVar SetQ(CLOMAdsLispVar& target, const CLOMReverseProxy& reversed);

  // --- Arguments and result of the LISP function that is being called ---

  // The list of the arguments, an empty list without any; nil when they cannot be converted.
  static CLOMAdsLispVar ParameterList();
  // Appends the arguments to what the array holds; one nil without arguments.
  static void Parameter(CArray<CLOMAdsLispVar, CLOMAdsLispVar&>& parameters);
  // One argument each; nil where there is none left. Further arguments are ignored.
  static void Parameter(CLOMAdsLispVar& p1);
  static void Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2);
  static void Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3);
  static void Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4);
  static void Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4,
                        CLOMAdsLispVar& p5);
  static void Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4,
                        CLOMAdsLispVar& p5, CLOMAdsLispVar& p6);
  static void Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4,
                        CLOMAdsLispVar& p5, CLOMAdsLispVar& p6, CLOMAdsLispVar& p7);
  static void Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4,
                        CLOMAdsLispVar& p5, CLOMAdsLispVar& p6, CLOMAdsLispVar& p7, CLOMAdsLispVar& p8);
  // Hands the value to LISP as ads_return does, and gives it.
  static CLOMAdsLispVar Return(const CLOMAdsLispVar& value);

  // --- LISP symbols and system variables: the name is a string atom; nil on failure ---

  static CLOMAdsLispVar GetSym(const CLOMAdsLispVar& name);
  static CLOMAdsLispVar PutSym(const CLOMAdsLispVar& name, const CLOMAdsLispVar& value);  // gives `value`
  static CLOMAdsLispVar GetVar(const CLOMAdsLispVar& name);
  static CLOMAdsLispVar SetVar(const CLOMAdsLispVar& name, const CLOMAdsLispVar& value);  // gives `value`

  // --- Entities: nil when the host refuses, without a message but from EntLast ---
  //
  // `name` is an entity name; for anything else they give nil, with "CLOMAdsLisp::EntDel : ..." and so
  // on, and do not ask the host. A value that is given back is shared.

  // Erases the entity, or restores it. Gives `name`.
  static CLOMAdsLispVar EntDel(const CLOMAdsLispVar& name);
  // The entity's list of DXF groups, flat: ((-1 . name) (0 . "LINE") ... -3 ("APP") (1000 . "x")). The
  // extended data only of the applications in the list of their names, ("APP" ...), nil for none. Linear
  // in the entity.
  static CLOMAdsLispVar EntGet(const CLOMAdsLispVar& name, const CLOMAdsLispVar& applications);
  static CLOMAdsLispVar EntGet(const CLOMAdsLispVar& name);
  // The name of the last entity. "CLOMAdsLisp::EntLast : ..." when there is none.
  static CLOMAdsLispVar EntLast();
  // Make or change an entity from its list of DXF groups, and give the list. What is no list of DXF
  // groups is handed to the host with brackets, which no host takes. Linear in the list.
  static CLOMAdsLispVar EntMake(const CLOMAdsLispVar& groups);
  static CLOMAdsLispVar EntMod(const CLOMAdsLispVar& groups);
  // The name of the entity behind `name`; nil at the end of the drawing.
  static CLOMAdsLispVar EntNext(const CLOMAdsLispVar& name);
  // Lets the user pick: a list of the entity's name and the point. nil prompts with the host's own
  // prompt; other prompts that are no texts give nil, with "CLOMAdsLisp::EntSel : ...". Waits for the
  // user.
  static CLOMAdsLispVar EntSel(const CLOMAdsLispVar& prompt);
  // Shows a changed entity anew. Gives `name`.
  static CLOMAdsLispVar EntUpd(const CLOMAdsLispVar& name);

  // A selection set (an RTPICKS atom), nil when nothing is selected. The values are taken in this
  // order, each where it is one: a text is the mode, one or two points (or else a list that begins with a
  // point) say where, anything but nil is the filter, a list of DXF groups. nil holds no place but the
  // filter's. Waits for the user where the mode does.
  static CLOMAdsLispVar SSGet(const CLOMAdsLispVar& mode, const CLOMAdsLispVar& first,
                              const CLOMAdsLispVar& second, const CLOMAdsLispVar& third);
};
