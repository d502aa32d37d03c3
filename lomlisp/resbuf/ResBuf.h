// One platform record seen as a typed value.
#pragma once

#include <lomlisp/platform/ads.h>
#include <lomlisp/platform/api.h>
#include <lomlisp/platform/mfc.h>
#include <lomlisp/platform/suite.h>

#include <cstddef>
#include <utility>

// The result types that a constructor accepts beside its value. The enumerators are the codes
// themselves; every type is a `short`, so that any code can be cast in.
enum class ADSRealType : short { Real = RTREAL, Angle = RTANG };
enum class ADSPointType : short { Point = RTPOINT, Point3d = RT3DPOINT };
enum class ADSNameType : short { Entity = RTENAME, PickSet = RTPICKS };
enum class ADSResType : short {};  // any code, as in ADSResType(RTLB)

// A `resbuf` with construction, checked casts, comparison, printing and classification.
//
// It has exactly the layout of `resbuf`, so a ResBuf* is a resbuf* and the other way round.
//
// Texts: a record of type RTSTR owns its text, a private copy from acad_malloc (null is allowed).
// A record of a DXF text group does not: its pointer is copied as it is. Texts that come under a
// DXF code through MakeDXF, or into an ADSList from the platform, are shared by the records that
// hold them and die with the last (see resbuf/DxfTexts.h); any other stays its owner's.
//
// Where a binary group holds bytes (see platform/binary.h), these are treated like a text, which they become
// as hexadecimal digits under any other type.
//
// All members take constant time, or time linear in the text they copy or compare. None throws.
class LOMLISP_API ResBuf : public resbuf {
 public:
  // --- Construction and assignment ---
  //
  // A fresh record has no next record, and the unused bytes of its value are zero. Assignment
  // keeps the next pointer, but assigning a record clears it. The source may be this record's own
  // text or coordinates. When memory for a text runs out, the text is null.

  ResBuf() : resbuf() { restype = RTNONE; }  // RTNONE
  ResBuf(short value) : ResBuf() { Init(value); }
  ResBuf(long value) : ResBuf() { Init(value); }  // RTLONG; its 32 low bits
  ResBuf(__int64 value) : ResBuf() { Init(value); }
  ResBuf(double value, ADSRealType type = ADSRealType::Real) : ResBuf() { Init(value, type); }
  ResBuf(const wchar_t* text) : ResBuf() { Init(text); }  // RTSTR, with a null text for null
  ResBuf(CString& text) : ResBuf() { Init(text.GetString()); }
  ResBuf(const CString& text) : ResBuf() { Init(text.GetString()); }
  // Two coordinates, and the third for RT3DPOINT; RTNONE for null.
  ResBuf(const double* point, ADSPointType type = ADSPointType::Point3d) : ResBuf() { Init(point, type); }
  // Both words; RTNONE for null.
  ResBuf(const __int64* name, ADSNameType type = ADSNameType::Entity) : ResBuf() { Init(name, type); }
  // That code with a value of -1; one of texts, RTSTR included, with a null text.
  ResBuf(ADSResType type) : ResBuf() { Init(type); }
  // RTSHORT of VT_I2, VT_UI2, and of VT_I1 and VT_UI1 as a signed byte; RTLONG of VT_I4, VT_UI4,
  // VT_INT, VT_UINT, and 1 or 0 of VT_BOOL; RTREAL of VT_R4 and VT_R8; RTSTR of VT_BSTR, up to a
  // zero, empty for null; RTNONE of every other type.
  ResBuf(COleVariant variant) : ResBuf() { Init(std::move(variant)); }
  ResBuf(const resbuf& record) : ResBuf() { Init(record); }
  ResBuf(const ResBuf& record) : ResBuf() { Init(record); }
  // Takes the source's text; the source becomes RTNONE.
  ResBuf(ResBuf&& record) noexcept : ResBuf() { Take(record); }
  ~ResBuf() {
    if (MayOwn(restype)) Destroy();
  }

  ResBuf& operator=(short value) { return Assign(ResBuf(value)); }
  ResBuf& operator=(long value) { return Assign(ResBuf(value)); }
  ResBuf& operator=(__int64 value) { return Assign(ResBuf(value)); }
  ResBuf& operator=(double value) { return Assign(ResBuf(value)); }
  ResBuf& operator=(const wchar_t* text) { return Assign(ResBuf(text)); }
  ResBuf& operator=(CString& text) { return Assign(ResBuf(text)); }
  ResBuf& operator=(const CString& text) { return Assign(ResBuf(text)); }
  ResBuf& operator=(const double* point) { return Assign(ResBuf(point)); }
  ResBuf& operator=(const __int64* name) { return Assign(ResBuf(name)); }
  ResBuf& operator=(ADSResType type) { return Assign(ResBuf(type)); }
  ResBuf& operator=(const resbuf& record) {
    if (MayOwn(restype) || MayOwn(record.restype)) return CopyOwner(record);
    rbnext = nullptr;
    restype = record.restype;
    resval = record.resval;
    return *this;
  }
  ResBuf& operator=(const ResBuf& record) { return *this = static_cast<const resbuf&>(record); }
  ResBuf& operator=(ResBuf&& record) noexcept;

  // Heap records live on the platform's heap, like those of acutNewRb.
  static void* operator new(size_t size) noexcept;  // null when memory runs out
  static void operator delete(void* record) noexcept;

  // --- The record ---

  short Type() const { return restype; }
  ResBuf* Next() const { return static_cast<ResBuf*>(rbnext); }
  void Connect(const ResBuf* next) { rbnext = const_cast<ResBuf*>(next); }
  // Turns RTLB into RTLE and RTLE into RTLB.
  void Reverse();
  operator resbuf*() { return this; }

  // --- Checked casts ---
  //
  // On a type that the cast does not accept they print "Fehler bei Cast von ResBuf auf ...", the
  // type and the value, and give 0, null, or a pointer to one static zero point or name.
  // A real is truncated toward zero; out of range, and for NaN, it gives the smallest integer.

  operator short() const;         // RTSHORT, RTLONG, RTINT64 (low 16 bits), RTREAL, RTANG
  operator int() const;           // the same types, low 32 bits
  operator unsigned int() const;  // as int; a real through a 64-bit integer
  operator long() const;          // as int: 32 bits on every system
  operator __int64() const;       // the same types
  operator double() const;        // the same types
  operator wchar_t*() const;      // RTSTR: the record's own text, possibly null
  operator double*() const;       // RTPOINT, RT3DPOINT: the record's own coordinates
  operator __int64*() const;      // RTENAME, RTPICKS: the record's own words

  // --- Equality: 1 or 0 ---
  //
  // Reals are equal when they differ by at most `tol`, and a tolerance of exactly 0.0 means 1e-9.
  // Integers are equal exactly. Texts compare as UTF-16 code units. A value of a kind that this
  // record does not hold is never equal to it.

  int Equal(short value, double tol) const;
  int Equal(long value, double tol) const;
  int Equal(__int64 value, double tol) const;
  int Equal(double value, double tol) const;
  int Equal(const wchar_t* text) const;              // a null text equals only null
  int Equal(const double* point, double tol) const;  // RTPOINT: x and y; RT3DPOINT: x, y, z
  int Equal(const __int64* name) const;
  int Equal(ADSResType type) const { return restype == static_cast<short>(type); }
  // By the type of `record`; an RTSHORT 3 equals an RTREAL 3.0. For a DXF code or an unknown type
  // it prints "Fehler bei ResBuf::operator== ..." with this record's type.
  int Equal(const resbuf& record, double tol) const;
  int Equal(const ResBuf& record, double tol) const { return Equal(static_cast<const resbuf&>(record), tol); }

  int operator==(short value) const { return Equal(value, 0.0); }
  int operator==(long value) const { return Equal(value, 0.0); }
  int operator==(__int64 value) const { return Equal(value, 0.0); }
  int operator==(double value) const { return Equal(value, 0.0); }
  int operator==(const wchar_t* text) const { return Equal(text); }
  int operator==(const double* point) const { return Equal(point, 0.0); }
  int operator==(const __int64* name) const { return Equal(name); }
  int operator==(ADSResType type) const { return Equal(type); }
  int operator==(const resbuf& record) const { return Equal(record, 0.0); }
  int operator==(const ResBuf& record) const { return Equal(record, 0.0); }

  // --- Order: 1 when this record is less, else 0; never with a tolerance ---
  //
  // An integer record is compared with the double truncated to 64 bits (saturated). Texts compare
  // as UTF-16 code units; a null text is less than nothing, and nothing is less than it.

  int Less(short value) const { return Less(static_cast<__int64>(value)); }
  int Less(long value) const { return Less(static_cast<__int64>(value)); }
  int Less(__int64 value) const;
  int Less(double value) const;
  int Less(const wchar_t* text) const;
  // Records of the same type compare by value. Of different numeric types, the bits of the other
  // value are read as this record's type. A number and a text are not ordered. For every type
  // without an order it prints "Fehler bei ResBuf::operator< ..." with this record's type.
  int Less(const resbuf& record) const;
  int Less(const ResBuf& record) const { return Less(static_cast<const resbuf&>(record)); }

  // --- Types ---

  // One of the RT codes of values, of brackets and of nil; RTT is none.
  static constexpr bool isBaseType(short type) {
    return (type >= RTNONE && type <= RTLONG) || type == RTVOID || (type >= RTLB && type <= RTDXF0) || type == RTINT64;
  }
  static bool isDXF(short type);       // a DXF group code
  // Whether a record of that type may hold a text as one of a DXF group: of the RT types only RTDXF0 can.
  static constexpr bool MayHoldText(short type) { return type < RTNONE || type == RTDXF0; }
  short BaseType() const { return DxfType(restype); }
  // "RTSTR", ...; for any other type "<n>" in one static buffer, valid until the next such call.
  wchar_t* TypeName() const { return TypeName(restype); }
  wchar_t* BaseTypeName() const { return TypeName(BaseType()); }
  // Sets the base type; the value stays as it is. A text that other records share is copied first,
  // because an RTSTR record owns its text alone.
  void MakeBaseType();
  // Sets a DXF code; the value stays as it is, but what is no text is a null text under a code of texts.
  // False and "ResBuf::MakeDXF : ..." when `type` is no DXF code, nor when it is that of bytes which the
  // text does not spell. A text becomes shared, see above.
  bool MakeDXF(short type);

  // --- Printing ---

  // Writes the value into `buf`, cut to `len` characters with the terminating zero, or prints it
  // on the command line when `buf` is null. Texts are cut at 2,047 characters. `len` 0 does
  // nothing.
  void Print(wchar_t* buf, size_t len) const;
  // Gives an estimate of the printed length. Unless `measureOnly` or without room, also writes the
  // debugging form at `cursor`, at most `remaining` characters, and moves both on; the terminating
  // zero is written only when there is room for it.
  unsigned long DebugPrint(int measureOnly, wchar_t*& cursor, unsigned long& remaining) const;

  // --- Copies for the platform ---
  //
  // Made with acutNewRb, the text of a text group (DXF codes included) copied; the caller releases
  // them with acutRelRb. When memory runs out they print "ResBuf::copyToAcadResBuf: can't ...",
  // release what they had built and give null. A null chain gives null.

  static resbuf* copyToAcadResBuf(const resbuf* record);
  static resbuf* copyToAcadResBuf(const ResBuf& record) {
    return copyToAcadResBuf(static_cast<const resbuf*>(&record));
  }
  static resbuf* copyToAcadResBufList(const resbuf* chain);

 protected:
  void Init();
  void Init(short value);
  void Init(long value);
  void Init(__int64 value);
  void Init(double value, ADSRealType type);
  void Init(const wchar_t* text);
  void Init(const double* point, ADSPointType type);
  void Init(const __int64* name, ADSNameType type);
  void Init(ADSResType type);
  void Init(COleVariant variant);  // clears the variant
  void Init(const resbuf& record);
  // Between a text of hexadecimal digits and the bytes of a binary group.
  void MakeDigits();
  bool MakeBytes(short type);
  // Lets the text go.
  void Destroy();

  // The name of `type`; for an unknown one, the number of this record's own type.
  wchar_t* TypeName(short type) const;

 private:
  // Whether a record of that type may have to let something go.
  static constexpr bool MayOwn(short type) { return type == RTSTR || MayHoldText(type); }

  // Keeps the next pointer.
  ResBuf& Assign(ResBuf&& value) noexcept {
    if (MayOwn(restype)) Destroy();
    Take(value);
    return *this;
  }
  // Takes the value of another record, which becomes RTNONE. This record is RTNONE so far.
  void Take(ResBuf& other) noexcept {
    restype = other.restype;
    resval = other.resval;
    if (MayHoldText(restype)) TakeHolder(other);
    other.restype = RTNONE;
  }
  void TakeHolder(const ResBuf& other) noexcept;
  // Assignment where one of the two may own something.
  ResBuf& CopyOwner(const resbuf& record);
};

static_assert(sizeof(ResBuf) == sizeof(resbuf));
