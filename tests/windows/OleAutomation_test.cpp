// Variants that Windows itself made: converted, they and all that they refer to stay the caller's, and no
// text of the system is lost.
#include <tests/support/Chains.h>

// After the library's headers, which include <windows.h>.
#include <objbase.h>

#include <iterator>
#include <string>

// The system's interfaces have no virtual destructors.
#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

namespace lomlisp::test::ole_automation {
namespace {

// An object that counts who holds it. It lives longer than all of them.
class Counted final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++holders; }
  ULONG STDMETHODCALLTYPE Release() override { return --holders; }

  ULONG holders = 1;
};

// Counts the blocks of the system's task allocator, from which its texts come.
class BlockCount final : public IMallocSpy {
 public:
  BlockCount() { registered = SUCCEEDED(CoRegisterMallocSpy(this)); }
  BlockCount(const BlockCount&) = delete;
  BlockCount& operator=(const BlockCount&) = delete;
  ~BlockCount() {
    if (registered) CoRevokeMallocSpy();
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool mine = IsEqualIID(id, IID_IMallocSpy) || IsEqualIID(id, IID_IUnknown);
    *object = mine ? this : nullptr;
    return mine ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  SIZE_T STDMETHODCALLTYPE PreAlloc(SIZE_T size) override { return size; }
  void* STDMETHODCALLTYPE PostAlloc(void* block) override {
    if (block != nullptr) {
      ++made;
      ++live;
    }
    return block;
  }
  void* STDMETHODCALLTYPE PreFree(void* block, BOOL ours) override {
    if (block != nullptr && ours) --live;
    return block;
  }
  void STDMETHODCALLTYPE PostFree(BOOL) override {}
  SIZE_T STDMETHODCALLTYPE PreRealloc(void* block, SIZE_T size, void** resized, BOOL) override {
    *resized = block;
    return size;
  }
  void* STDMETHODCALLTYPE PostRealloc(void* block, BOOL) override { return block; }
  void* STDMETHODCALLTYPE PreGetSize(void* block, BOOL) override { return block; }
  SIZE_T STDMETHODCALLTYPE PostGetSize(SIZE_T size, BOOL) override { return size; }
  void* STDMETHODCALLTYPE PreDidAlloc(void* block, BOOL) override { return block; }
  int STDMETHODCALLTYPE PostDidAlloc(void*, BOOL, int did) override { return did; }
  void STDMETHODCALLTYPE PreHeapMinimize() override {}
  void STDMETHODCALLTYPE PostHeapMinimize() override {}

  bool registered = false;
  int made = 0;
  int live = 0;
};

VARIANT Bare(VARTYPE type) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = type;
  return variant;
}
VARIANT Referring(VARTYPE type, void* referent) {
  VARIANT variant = Bare(static_cast<VARTYPE>(VT_BYREF | type));
  variant.byref = referent;
  return variant;
}

// What the system makes of a value in another type.
COleVariant Changed(COleVariant from, VARTYPE type) {
  COleVariant to;
  EXPECT_EQ(VariantChangeTypeEx(&to, &from, LOCALE_INVARIANT, VARIANT_ALPHABOOL, type), S_OK);
  EXPECT_EQ(to.vt, type);
  return to;
}

std::string Convert(const COleVariant& variant) { return Tree(CLOMAdsLispVar(variant)); }

class OleAutomation : public HostTest {
 protected:
  // Blocks are only counted where the system does not keep freed texts for later.
  static void SetUpTestSuite() {
    const HMODULE library = GetModuleHandleW(L"oleaut32.dll");
    ASSERT_NE(library, nullptr);
    const auto function =
        reinterpret_cast<void (*)()>(reinterpret_cast<void*>(GetProcAddress(library, "SetOaNoCache")));
    ASSERT_NE(function, nullptr);
    function();
  }
};

}  // namespace

TEST_F(OleAutomation, TheSystemsTrueIsMinusOneAndBecomesOne) {
  const COleVariant fromText = Changed(COleVariant(L"True", VT_BSTR), VT_BOOL);
  EXPECT_EQ(fromText.boolVal, -1);
  EXPECT_EQ(Convert(fromText), "5010:1");
  EXPECT_EQ(Convert(Changed(COleVariant(5L), VT_BOOL)), "5010:1");
  EXPECT_EQ(Convert(Changed(COleVariant(0L), VT_BOOL)), "5010:0");
  VARIANT one = Bare(VT_BOOL);
  one.boolVal = 1;
  EXPECT_EQ(Convert(one), "5010:1") << "true for all but the system";
}

TEST_F(OleAutomation, ABytesSignIsExtended) {
  EXPECT_EQ(Convert(Changed(COleVariant(200L), VT_UI1)), "5003:-56");
  EXPECT_EQ(Convert(Changed(COleVariant(255L), VT_UI1)), "5003:-1");
  EXPECT_EQ(Convert(Changed(COleVariant(127L), VT_UI1)), "5003:127");
  EXPECT_EQ(Convert(Changed(COleVariant(-56L), VT_I1)), "5003:-56");
}

TEST_F(OleAutomation, NumbersOfEachWidth) {
  EXPECT_EQ(Convert(Changed(COleVariant(-7L), VT_I2)), "5003:-7");
  EXPECT_EQ(Convert(Changed(COleVariant(65535L), VT_UI2)), "5003:-1");
  EXPECT_EQ(Convert(Changed(COleVariant(70000L), VT_INT)), "5010:70000");
  EXPECT_EQ(Convert(Changed(COleVariant(4294967295.0), VT_UI4)), "5010:-1");
  EXPECT_EQ(Convert(Changed(COleVariant(L"2.5", VT_BSTR), VT_R4)), "5001:2.5");
  EXPECT_EQ(Convert(Changed(COleVariant(L"-1e300", VT_BSTR), VT_R8)), Tree(CLOMAdsLispVar(-1e300)));
}

TEST_F(OleAutomation, WhatIsNoSimpleValueBecomesAnEmptyList) {
  for (const VARTYPE type : {VT_DATE, VT_CY, VT_DECIMAL, VT_I8, VT_UI8}) {
    const COleVariant variant = Changed(COleVariant(7L), type);
    EXPECT_EQ(Convert(variant), "()") << type;
    EXPECT_EQ(Changed(variant, VT_I4).lVal, 7) << type << ": the caller's changed";
  }
}

TEST_F(OleAutomation, AReferenceIsNotFollowed) {
  LONG number = 7;
  VARIANT_BOOL truth = VARIANT_TRUE;
  BYTE byte = 200;
  BSTR text = SysAllocString(L"abc");
  COleVariant inner(8L);
  VARIANT references[] = {Referring(VT_I4, &number), Referring(VT_BOOL, &truth), Referring(VT_UI1, &byte),
                          Referring(VT_BSTR, &text), Referring(VT_VARIANT, &inner)};
  for (const VARIANT& reference : references) EXPECT_EQ(Convert(reference), "()") << reference.vt;
  EXPECT_EQ(number, 7);
  EXPECT_EQ(truth, VARIANT_TRUE);
  EXPECT_EQ(byte, 200);
  EXPECT_STREQ(text, L"abc");
  EXPECT_EQ(inner.lVal, 8);

  // The caller can have it followed.
  const char* const values[] = {"5010:7", "5010:1", "5003:-56", "5005:abc", "5010:8"};
  for (size_t i = 0; i < std::size(references); ++i) {
    COleVariant value;
    ASSERT_EQ(VariantCopyInd(&value, &references[i]), S_OK);
    EXPECT_EQ(Convert(value), values[i]);
  }
  SysFreeString(text);
}

TEST_F(OleAutomation, ATextEndsAtItsFirstZeroAndStaysWhole) {
  COleVariant variant = Bare(VT_BSTR);
  variant.bstrVal = SysAllocStringLen(L"ab\0cd", 5);
  EXPECT_EQ(Convert(variant), "5005:ab");
  EXPECT_EQ(SysStringLen(variant.bstrVal), 5U);
  EXPECT_EQ(std::wstring(variant.bstrVal, 5), std::wstring(L"ab\0cd", 5));

  // Longer, in a new place perhaps.
  ASSERT_TRUE(SysReAllocStringLen(&variant.bstrVal, std::wstring(5000, L'x').c_str(), 5000));
  EXPECT_EQ(Convert(variant), "5005:" + std::string(5000, 'x'));
}

TEST_F(OleAutomation, ATextOfHalfACharacterMoreIsReadWithoutIt) {
  COleVariant variant = Bare(VT_BSTR);
  variant.bstrVal = SysAllocStringByteLen("a\0b\0c", 5);
  ASSERT_NE(variant.bstrVal, nullptr);
  EXPECT_EQ(SysStringByteLen(variant.bstrVal), 5U);
  const std::string converted = Convert(variant);
  EXPECT_EQ(converted.substr(0, 7), "5005:ab");
  EXPECT_LE(converted.size(), 8U) << "no more than the half";
}

TEST_F(OleAutomation, CharactersBeyond16BitsStayPairs) {
  const COleVariant variant(L"\U0001F600", VT_BSTR);
  EXPECT_EQ(SysStringLen(variant.bstrVal), 2U);
  const COleVariant back = CLOMAdsLispVar(variant).LispToOleVariant();
  ASSERT_EQ(back.vt, VT_BSTR);
  EXPECT_STREQ(back.bstrVal, L"\U0001F600");
}

TEST_F(OleAutomation, AnObjectIsReleasedAsOftenAsItIsHeld) {
  Counted object;
  for (const VARTYPE type : {VT_UNKNOWN, VT_DISPATCH}) {
    {
      COleVariant variant;
      VARIANT held = Bare(type);
      held.punkVal = &object;
      variant = held;
      EXPECT_EQ(object.holders, 2U);
      const CLOMAdsLispVar value(variant);
      EXPECT_EQ(Tree(value), "()");
      EXPECT_EQ(object.holders, 2U) << "the value holds it";
    }
    EXPECT_EQ(object.holders, 1U);
  }
}

TEST_F(OleAutomation, AnArrayStaysTheCallers) {
  COleVariant variant = Bare(VT_ARRAY | VT_BSTR);
  variant.parray = SafeArrayCreateVector(VT_BSTR, 0, 3);
  ASSERT_NE(variant.parray, nullptr);
  BSTR text = SysAllocString(L"abc");
  LONG index = 1;
  ASSERT_EQ(SafeArrayPutElement(variant.parray, &index, text), S_OK);
  SysFreeString(text);
  EXPECT_EQ(Convert(variant), "()");
  text = nullptr;
  ASSERT_EQ(SafeArrayGetElement(variant.parray, &index, &text), S_OK);
  EXPECT_STREQ(text, L"abc");
  SysFreeString(text);
}

TEST_F(OleAutomation, TheSystemTakesWhatIsGiven) {
  COleVariant real = CLOMAdsLispVar(2.5).LispToOleVariant();
  COleVariant integer = CLOMAdsLispVar(7).LispToOleVariant();
  COleVariant text = CLOMAdsLispVar(L"12").LispToOleVariant();
  EXPECT_STREQ(Changed(real, VT_BSTR).bstrVal, L"2.5");
  EXPECT_STREQ(Changed(integer, VT_BSTR).bstrVal, L"7");
  EXPECT_EQ(Changed(text, VT_I4).lVal, 12);

  SAFEARRAY* const array = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  ASSERT_NE(array, nullptr);
  LONG index = 0;
  EXPECT_EQ(SafeArrayPutElement(array, &index, &text), S_OK);
  COleVariant element;
  EXPECT_EQ(SafeArrayGetElement(array, &index, &element), S_OK);
  EXPECT_EQ(Convert(element), "5005:12");
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST_F(OleAutomation, NoTextOfTheSystemIsLost) {
  BlockCount blocks;
  ASSERT_TRUE(blocks.registered);
  {
    const COleVariant variant(std::wstring(1000, L'x').c_str(), VT_BSTR);
    ASSERT_GT(blocks.live, 0) << "the system's texts are not counted";
    const CLOMAdsLispVar value(variant);
    const ResBuf record(variant);
    const COleVariant back = value.LispToOleVariant();
    EXPECT_EQ(SysStringLen(back.bstrVal), 1000U);
    COleVariant assigned = back;
    assigned = variant;
    assigned = 7L;
  }
  EXPECT_EQ(blocks.live, 0);
  EXPECT_GT(blocks.made, 3);
}

}  // namespace lomlisp::test::ole_automation
