#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test {
namespace {

CLOMAdsLispVar Group(short code, const CLOMAdsLispVar& value) { return Dotted({code, value}); }

class DxfGroups : public HostTest {
 protected:
  using Writer = bool (*)(const CLOMAdsLispVar::ConstElement&, ADSList&);

  // What was written, and in front of it whether that succeeded.
  static std::string Write(Writer writer, const CLOMAdsLispVar& value) {
    ADSList target;
    const bool written = writer(value.New(), target);
    const std::string records = Types(target);
    return (written ? "true" : "false") + (records.empty() ? "" : " " + records);
  }
  static std::string List(const CLOMAdsLispVar& value) { return Write(CLOMAdsLispVar::LispToDXFList, value); }
  static std::string Element(const CLOMAdsLispVar& value) {
    return Write(CLOMAdsLispVar::LispToDXFElement, value);
  }
  static std::string XData(const CLOMAdsLispVar& value) {
    return Write(CLOMAdsLispVar::LispToXDataList, value);
  }

  static CLOMAdsLispVar NilAtom() {
    CLOMAdsLispVar atom(short{1});
    atom.GetAtom() = static_cast<ADSResType>(RTNIL);
    return atom;
  }

  void TearDown() override {
    EXPECT_EQ(Printed(), "") << "nothing here prints";
    HostTest::TearDown();
  }
};

// --- Lists of groups ---

TEST_F(DxfGroups, AnAtomIsAListOfNoGroups) {
  EXPECT_EQ(List(short{1}), "true");
  EXPECT_EQ(List(L"x"), "true");
  EXPECT_EQ(List(NilAtom()), "true");
}

TEST_F(DxfGroups, NilAndTheEmptyListHaveNoGroups) {
  EXPECT_EQ(List(CLOMAdsLisp::Nil), "true");
  EXPECT_EQ(List(ListOf({})), "true");
}

TEST_F(DxfGroups, EveryMemberIsOneGroup) {
  EXPECT_EQ(List(V(L"((0 . \"s\") (8 . \"l\") (62 . 1))")), "true 0:s 8:l 62");
  EXPECT_EQ(List(Dotted({Group(0, L"s"), Group(8, L"l")})), "true 0:s 8:l");
}

TEST_F(DxfGroups, TheFirstBadMemberEndsTheListAndWhatWasWrittenStays) {
  EXPECT_EQ(List(ListOf({Group(0, L"s"), L"x", Group(8, L"l")})), "false 0:s");
  EXPECT_EQ(List(ListOf({CLOMAdsLisp::Nil, Group(8, L"l")})), "false");
  EXPECT_EQ(List(ListOf({Group(0, L"s"), CLOMAdsLisp::Nil})), "false 0:s");
}

TEST_F(DxfGroups, AppendsBehindWhatTheTargetHolds) {
  ADSList target(new ResBuf(short{7}), ADSCopyFlag::Adopt);
  target.GoStart();
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFList(ListOf({Group(8, L"l")}).New(), target));
  target.GoStart();
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(Group(62, short{1}).New(), target));
  target.GoStart();
  EXPECT_TRUE(CLOMAdsLispVar::LispToXDataList(ListOf({L"A"}).New(), target));
  EXPECT_EQ(Types(target), "5003:7 8:l 62 1001:A");
}

// --- One group ---

TEST_F(DxfGroups, NilAndAtomsAreNoGroup) {
  EXPECT_EQ(Element(CLOMAdsLisp::Nil), "false");
  EXPECT_EQ(Element(NilAtom()), "false");
  EXPECT_EQ(Element(short{8}), "false");
  EXPECT_EQ(Element(L"x"), "false");
}

TEST_F(DxfGroups, APointIsABareRecord) {
  ADSList target;
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(V(L"(1 2.5)").New(), target));
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(V(L"(1.0 2.5 3)").New(), target));
  EXPECT_EQ(Types(target), "5009 5009");
  const ResBuf* flat = target.First();
  EXPECT_EQ(flat->resval.rpoint[0], 1);
  EXPECT_EQ(flat->resval.rpoint[1], 2.5);
  EXPECT_EQ(flat->resval.rpoint[2], 0);
  EXPECT_EQ(flat->Next()->resval.rpoint[2], 3);
}

TEST_F(DxfGroups, AListOfTwoNumbersIsAPointWhateverItsCode) {
  EXPECT_EQ(Element(V(L"(62 1)")), "true 5009");
  EXPECT_EQ(Element(V(L"(10 1.0 2.0)")), "true 5009");
  EXPECT_EQ(Element(V(L"(-3 1)")), "true 5009");
}

TEST_F(DxfGroups, TheCodeMustBeAnInteger) {
  EXPECT_EQ(Element(Dotted({8.0, L"l"})), "false");
  EXPECT_EQ(Element(Dotted({8L, L"l"})), "false");
  EXPECT_EQ(Element(Dotted({L"8", L"l"})), "false");
  EXPECT_EQ(Element(Dotted({CLOMAdsLisp::Nil, L"l"})), "false");
  EXPECT_EQ(Element(Dotted({ListOf({short{8}}), L"l"})), "false");
  EXPECT_EQ(Element(ListOf({})), "false");
}

TEST_F(DxfGroups, OfALongCodeTheLowBitsCount) {
  EXPECT_EQ(Element(Dotted({static_cast<__int64>(8), L"l"})), "true 8:l");
  EXPECT_EQ(Element(Dotted({static_cast<__int64>(65536 + 8), L"l"})), "true 8:l");
}

TEST_F(DxfGroups, TheCodeMustBeAGroupCode) {
  for (const short code : {RTSTR, RTSHORT, RTNIL, short{80}, short{-6}, short{1072}, short{482}})
    EXPECT_EQ(Element(Group(code, L"x")), "false");
}

TEST_F(DxfGroups, EveryGroupCodeIsWritten) {
  for (int code = kFirstDxfCode; code <= kLastDxfCode; ++code) {
    const auto group = static_cast<short>(code);
    if (DxfType(group) == group || group == -3) continue;
    if (DxfType(group) == RT3DPOINT) {
      EXPECT_EQ(Element(Group(group, V(L"(1 2)"))), "true " + std::to_string(code));
      EXPECT_EQ(Element(Group(group, short{1})), "false");
    } else if (DxfType(group) == RTSTR) {
      EXPECT_EQ(Element(Group(group, L"x")), "true " + std::to_string(code) + ":x");
    } else {
      EXPECT_EQ(Element(Group(group, short{1})), "true " + std::to_string(code));
    }
  }
}

TEST_F(DxfGroups, TheValueIsTheSecondMember) {
  EXPECT_EQ(Element(Dotted({short{8}, L"l"})), "true 8:l");
  EXPECT_EQ(Element(ListOf({short{8}, L"l"})), "true 8:l");
  EXPECT_EQ(Element(ListOf({short{8}, L"l", L"m", CLOMAdsLisp::Nil})), "true 8:l");
}

TEST_F(DxfGroups, ACodeWithoutAValueIsNoGroup) {
  EXPECT_EQ(Element(ListOf({short{8}})), "false");
  EXPECT_EQ(Element(Dotted({short{8}})), "false");
  EXPECT_EQ(Element(ListOf({short{10}})), "false");
  ADSList target;
  EXPECT_FALSE(CLOMAdsLispVar::LispToDXFElement(ListOf({short{-3}}).New(), target));
}

TEST_F(DxfGroups, TheValueMustBeAnAtom) {
  EXPECT_EQ(Element(Group(8, CLOMAdsLisp::Nil)), "false");
  EXPECT_EQ(Element(Group(8, ListOf({}))), "false");
  EXPECT_EQ(Element(Group(8, ListOf({L"l"}))), "false");
  EXPECT_EQ(Element(Group(40, V(L"(1 2 3)"))), "false");
}

TEST_F(DxfGroups, ThePointOfAPointGroupMustBeOneList) {
  ADSList target;
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(Group(10, V(L"(1 2 3)")).New(), target));
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(ListOf({short{11}, V(L"(4.5 5)")}).New(), target));
  EXPECT_EQ(Types(target), "10 11");
  const ResBuf* group = target.First();
  EXPECT_EQ(group->resval.rpoint[0], 1);
  EXPECT_EQ(group->resval.rpoint[1], 2);
  EXPECT_EQ(group->resval.rpoint[2], 3);
  EXPECT_EQ(group->Next()->resval.rpoint[0], 4.5);
  EXPECT_EQ(group->Next()->resval.rpoint[2], 0);
  EXPECT_EQ(Element(V(L"(10 1.0 2.0 3.0)")), "false");
  EXPECT_EQ(Element(Group(10, V(L"(1)"))), "false");
  EXPECT_EQ(Element(Group(10, V(L"(1 2 3 4)"))), "false");
  EXPECT_EQ(Element(Group(10, V(L"(1 \"a\")"))), "false");
  EXPECT_EQ(Element(Group(10, CLOMAdsLisp::Nil)), "false");
}

TEST_F(DxfGroups, ThePointAtomOfAPointGroupIsNoPoint) {
  const double point[3] = {1, 2, 3};
  CLOMAdsLispVar atom(short{1});
  atom.GetAtom() = ResBuf(point);
  EXPECT_EQ(Element(Group(10, atom)), "false");
}

TEST_F(DxfGroups, TheTypeOfTheValueIsNotCheckedButANumberIsNoText) {
  ADSList target;
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(Group(8, short{5}).New(), target));
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(Group(62, L"text").New(), target));
  EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(Group(8, NilAtom()).New(), target));
  const ResBuf* number = target.First();
  ASSERT_EQ(number->restype, 8);
  EXPECT_EQ(number->resval.rstring, nullptr);
  const ResBuf* text = number->Next();
  ASSERT_EQ(text->restype, 62);
  EXPECT_EQ(Utf8(text->resval.rstring), "text");
  EXPECT_EQ(text->Next()->restype, 8);
}

// --- Extended data ---

// Found by the fuzzer of chains.
TEST_F(DxfGroups, ANumberUnderATextsCodeReadsBackAsNoText) {
  ADSList groups;
  ListOf({Group(8, short{5}), Group(62, short{1})}).LispToDXF(groups);
  EXPECT_EQ(Types(groups), "8 62");
  CLOMAdsLispVar again;
  EXPECT_TRUE(again.ADSToLisp(groups));
  EXPECT_EQ(Tree(again), "({5003:8 5005:<null>} {5003:62 5003:1})");
}

TEST_F(DxfGroups, TheMarkerIsFollowedByItsApplication) {
  const CLOMAdsLispVar application = ListOf({L"APP", ListOf({Group(1000, L"x"), Group(1040, 1.5)})});
  EXPECT_EQ(Element(Group(-3, application)), "true -3 1001:APP 1000:x 1040");
  EXPECT_EQ(Element(ListOf({short{-3}, application})), "true -3 1001:APP 1000:x 1040");
  ADSList target;
  CLOMAdsLispVar::LispToDXFElement(Group(-3, application).New(), target);
  EXPECT_EQ(target.First()->resval.rint, 0);
}

TEST_F(DxfGroups, OnlyTheFirstApplicationIsWritten) {
  EXPECT_EQ(Element(ListOf({short{-3}, ListOf({L"A"}), ListOf({L"B"})})), "true -3 1001:A");
}

TEST_F(DxfGroups, TheMarkerStaysWhenItsApplicationIsBad) {
  EXPECT_EQ(Element(Group(-3, L"APP")), "false -3");
  EXPECT_EQ(Element(Group(-3, CLOMAdsLisp::Nil)), "false -3");
  EXPECT_EQ(Element(Group(-3, ListOf({}))), "false -3");
  EXPECT_EQ(Element(Group(-3, ListOf({short{1}}))), "false -3");
  EXPECT_EQ(Element(Group(-3, ListOf({L"A", ListOf({Group(1000, L"x"), L"bad"})}))),
            "false -3 1001:A 1000:x");
}

TEST_F(DxfGroups, AnApplicationIsAProperListWithANameInFront) {
  EXPECT_EQ(XData(ListOf({L"APP"})), "true 1001:APP");
  EXPECT_EQ(XData(L"APP"), "false");
  EXPECT_EQ(XData(NilAtom()), "false");
  EXPECT_EQ(XData(CLOMAdsLisp::Nil), "false");
  EXPECT_EQ(XData(ListOf({})), "false");
  EXPECT_EQ(XData(Dotted({L"APP", ListOf({Group(1000, L"x")})})), "false");
  EXPECT_EQ(XData(ListOf({short{1}, ListOf({})})), "false");
  EXPECT_EQ(XData(ListOf({CLOMAdsLisp::Nil})), "false");
  EXPECT_EQ(XData(ListOf({ListOf({L"APP"})})), "false");
}

TEST_F(DxfGroups, EveryFurtherMemberOfAnApplicationIsAListOfGroups) {
  EXPECT_EQ(
      XData(ListOf({L"A", ListOf({Group(1000, L"x")}), ListOf({Group(1000, L"y"), Group(1070, short{1})})})),
      "true 1001:A 1000:x 1000:y 1070");
  EXPECT_EQ(XData(ListOf({L"A", short{5}, CLOMAdsLisp::Nil, ListOf({})})), "true 1001:A");
  EXPECT_EQ(XData(ListOf({L"A", Group(1000, L"x")})), "false 1001:A");
  EXPECT_EQ(XData(ListOf({L"A", ListOf({Group(1000, L"x")}), ListOf({L"bad"}), ListOf({Group(1000, L"z")})})),
            "false 1001:A 1000:x");
}

TEST_F(DxfGroups, ExtendedDataNests) {
  const CLOMAdsLispVar inner = ListOf({Group(-3, ListOf({L"B", ListOf({Group(1000, L"y")})}))});
  EXPECT_EQ(Element(Group(-3, ListOf({L"A", inner, ListOf({Group(1000, L"x")})}))),
            "true -3 1001:A -3 1001:B 1000:y 1000:x");
}

TEST_F(DxfGroups, NamesAreCopied) {
  const CLOMAdsLispVar application = ListOf({L"APP"});
  ADSList target;
  EXPECT_TRUE(CLOMAdsLispVar::LispToXDataList(application.New(), target));
  EXPECT_NE(target.First()->resval.rstring, application.New()->children[0]->atom.resval.rstring);
}

TEST_F(DxfGroups, DeepExtendedDataNeedsNoStack) {
  CLOMAdsLispVar groups = ListOf({Group(1070, short{1})});
  for (int i = 0; i < kLarge / 10; ++i) groups = ListOf({Group(-3, ListOf({L"A", groups}))});
  OnSmallStack([&] {
    ADSList list, element, data;
    EXPECT_TRUE(CLOMAdsLispVar::LispToDXFList(groups.New(), list));
    const CLOMAdsLispVar::Element marker = groups.New()->children[0];
    EXPECT_TRUE(CLOMAdsLispVar::LispToDXFElement(marker, element));
    EXPECT_TRUE(CLOMAdsLispVar::LispToXDataList(marker->children[1], data));
    EXPECT_EQ(data.First()->Type(), 1001);
  });
}

}  // namespace
}  // namespace lomlisp::test
