#include <tests/support/HostTest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace lomlisp::test {
namespace {

class SystemVariablesTest : public HostTest {
 protected:
  // The variable's value as the client gets it.
  std::string Got(const wchar_t* name) {
    resbuf* record = acutNewRb(RTNIL);
    EXPECT_EQ(acedGetVar(name, record), RTNORM) << Utf8(name);
    const std::string text = std::to_string(record->restype) + " " + Text(record);
    acutRelRb(record);
    return text;
  }
  static resbuf Of(short type) {
    resbuf record{};
    record.restype = type;
    return record;
  }
  static int SetInteger(const wchar_t* name, int value) {
    resbuf record = Of(RTSHORT);
    record.resval.rint = static_cast<short>(value);
    return acedSetVar(name, &record);
  }
  static int SetLong(const wchar_t* name, int32_t value) {
    resbuf record = Of(RTLONG);
    record.resval.rlong = value;
    return acedSetVar(name, &record);
  }
  static int SetReal(const wchar_t* name, double value, short type = RTREAL) {
    resbuf record = Of(type);
    record.resval.rreal = value;
    return acedSetVar(name, &record);
  }
  static int SetText(const wchar_t* name, const wchar_t* value) {
    resbuf record = Of(RTSTR);
    record.resval.rstring = const_cast<wchar_t*>(value);
    return acedSetVar(name, &record);
  }
  static int SetPoint(const wchar_t* name, short type, double x, double y, double z) {
    resbuf record = Of(type);
    record.resval.rpoint[0] = x;
    record.resval.rpoint[1] = y;
    record.resval.rpoint[2] = z;
    return acedSetVar(name, &record);
  }
};

TEST_F(SystemVariablesTest, ANewDrawingHasItsVariables) {
  EXPECT_EQ(Got(L"CMDECHO"), "5003 1");
  EXPECT_EQ(Got(L"osmode"), "5003 0");
  EXPECT_EQ(Got(L"LTSCALE"), "5001 1.0");
  EXPECT_EQ(Got(L"CLAYER"), "5005 \"0\"");
  EXPECT_EQ(Got(L"DWGNAME"), "5005 \"Drawing1.dwg\"");
  EXPECT_EQ(Got(L"LASTPOINT"), "5009 (0.0 0.0 0.0)");
  EXPECT_EQ(Got(L"LIMMIN"), "5002 (0.0 0.0)");
  EXPECT_EQ(Got(L"LIMMAX"), "5002 (420.0 297.0)");
  EXPECT_EQ(Got(L"ERRNO"), "5003 0");
  EXPECT_EQ(Got(L"DATE").substr(0, 5), "5001 ");
  for (const wchar_t* name : {L"TEXTSIZE", L"INSUNITS", L"ORTHOMODE", L"LUPREC", L"LUNITS"}) Got(name);
  for (const std::wstring digit : {L"1", L"2", L"3", L"4", L"5"}) {
    EXPECT_EQ(Got((L"USERI" + digit).c_str()), "5003 0");
    EXPECT_EQ(Got((L"USERR" + digit).c_str()), "5001 0.0");
    EXPECT_EQ(Got((L"USERS" + digit).c_str()), "5005 \"\"");
  }
}

TEST_F(SystemVariablesTest, TheRecordIsFilledAndItsLinkKept) {
  resbuf next = Of(RTNIL);
  resbuf record = Of(RTNIL);
  record.rbnext = &next;
  EXPECT_EQ(acedGetVar(L"CLAYER", &record), RTNORM);
  EXPECT_EQ(record.restype, RTSTR);
  EXPECT_EQ(record.rbnext, &next);
  EXPECT_EQ(host.ledger.Live().blocks, 1U);
  EXPECT_TRUE(host.ledger.IsLive(record.resval.rstring));
  acad_free(record.resval.rstring);
}

TEST_F(SystemVariablesTest, WhatTheRecordHeldIsNotFreed) {
  auto* text = static_cast<wchar_t*>(acad_malloc(8));
  std::memset(text, 0, 8);
  resbuf record = Of(RTSTR);
  record.resval.rstring = text;
  EXPECT_EQ(acedGetVar(L"OSMODE", &record), RTNORM);
  EXPECT_TRUE(host.ledger.IsLive(text));
  acad_free(text);
}

TEST_F(SystemVariablesTest, ARefusedQuestionLeavesTheRecord) {
  resbuf record = Of(RTSHORT);
  record.resval.rint = 77;
  EXPECT_EQ(acedGetVar(L"NOSUCH", &record), RTERROR);
  EXPECT_EQ(acedGetVar(nullptr, &record), RTERROR);
  host.ledger.FailAllocation(1);
  EXPECT_EQ(acedGetVar(L"CLAYER", &record), RTERROR);
  EXPECT_EQ(record.restype, RTSHORT);
  EXPECT_EQ(record.resval.rint, 77);
  EXPECT_EQ(acedGetVar(L"OSMODE", nullptr), RTERROR);
}

TEST_F(SystemVariablesTest, IntegersAreSetWithinTheirRange) {
  EXPECT_EQ(SetInteger(L"cmdecho", 0), RTNORM);
  EXPECT_EQ(Got(L"CMDECHO"), "5003 0");
  EXPECT_EQ(SetInteger(L"CMDECHO", 2), RTERROR);
  EXPECT_EQ(SetInteger(L"CMDECHO", -1), RTERROR);
  EXPECT_EQ(Got(L"CMDECHO"), "5003 0");
  EXPECT_EQ(SetLong(L"USERI1", -32768), RTNORM);
  EXPECT_EQ(Got(L"USERI1"), "5003 -32768");
  EXPECT_EQ(SetLong(L"USERI1", 32768), RTERROR);
  EXPECT_EQ(SetReal(L"USERI1", 1.0), RTERROR);
  EXPECT_EQ(SetText(L"USERI1", L"1"), RTERROR);
  EXPECT_EQ(SetPoint(L"USERI1", RTPOINT, 1, 2, 0), RTERROR);
  EXPECT_EQ(Got(L"USERI1"), "5003 -32768");
}

TEST_F(SystemVariablesTest, RealsTakeIntegersToo) {
  EXPECT_EQ(SetReal(L"USERR1", -2.5), RTNORM);
  EXPECT_EQ(Got(L"USERR1"), "5001 -2.5");
  EXPECT_EQ(SetInteger(L"USERR1", 3), RTNORM);
  EXPECT_EQ(Got(L"USERR1"), "5001 3.0");
  EXPECT_EQ(SetLong(L"USERR1", 70000), RTNORM);
  EXPECT_EQ(SetReal(L"USERR1", 1.5, RTANG), RTNORM);
  EXPECT_EQ(Got(L"USERR1"), "5001 1.5");
  EXPECT_EQ(SetText(L"USERR1", L"1.5"), RTERROR);
}

TEST_F(SystemVariablesTest, RealsOutOfRangeAreRefused) {
  SetReal(L"LTSCALE", 2.0);
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double value : {0.0, -1.0, std::nan(""), infinity, -infinity, 1e100})
    EXPECT_EQ(SetReal(L"LTSCALE", value), RTERROR) << value;
  EXPECT_EQ(Got(L"LTSCALE"), "5001 2.0");
  EXPECT_EQ(SetReal(L"USERR1", std::nan("")), RTERROR);
}

TEST_F(SystemVariablesTest, TextsAreCopied) {
  wchar_t text[] = L"walls";
  EXPECT_EQ(SetText(L"USERS1", text), RTNORM);
  text[0] = L'W';
  EXPECT_EQ(Got(L"USERS1"), "5005 \"walls\"");
  EXPECT_EQ(SetText(L"USERS1", nullptr), RTERROR);
  EXPECT_EQ(SetInteger(L"USERS1", 0), RTERROR);
  EXPECT_EQ(Got(L"USERS1"), "5005 \"walls\"");
}

TEST_F(SystemVariablesTest, TheCurrentLayerIsThere) {
  wchar_t zero[] = L"0";
  wchar_t walls[] = L"walls";
  EXPECT_EQ(SetText(L"clayer", walls), RTERROR);
  EXPECT_EQ(Got(L"CLAYER"), "5005 \"0\"");
  host.CurrentDrawing().NewEntry(L"LAYER", L"Walls", {});
  EXPECT_EQ(SetText(L"clayer", walls), RTNORM);
  EXPECT_EQ(Got(L"CLAYER"), "5005 \"walls\"");
  EXPECT_EQ(SetText(L"CLAYER", zero), RTNORM);
}

TEST_F(SystemVariablesTest, PointsAreSetByTheirDimension) {
  EXPECT_EQ(SetPoint(L"LASTPOINT", RT3DPOINT, 1, 2, 3), RTNORM);
  EXPECT_EQ(Got(L"LASTPOINT"), "5009 (1.0 2.0 3.0)");
  EXPECT_EQ(SetPoint(L"LASTPOINT", RTPOINT, 4, 5, 6), RTNORM);
  EXPECT_EQ(Got(L"LASTPOINT"), "5009 (4.0 5.0 0.0)");
  EXPECT_EQ(SetPoint(L"LIMMAX", RTPOINT, 7, 8, 9), RTNORM);
  EXPECT_EQ(Got(L"LIMMAX"), "5002 (7.0 8.0)");
  EXPECT_EQ(SetPoint(L"LIMMAX", RT3DPOINT, 1, 2, 3), RTERROR);
  EXPECT_EQ(SetPoint(L"LIMMAX", RTPOINT, 1, std::nan(""), 0), RTERROR);
  EXPECT_EQ(SetReal(L"LIMMAX", 1.0), RTERROR);
  EXPECT_EQ(Got(L"LIMMAX"), "5002 (7.0 8.0)");
}

TEST_F(SystemVariablesTest, ReadOnlyUnknownAndNullAreRefused) {
  EXPECT_EQ(SetText(L"DWGNAME", L"x.dwg"), RTERROR);
  EXPECT_EQ(Got(L"DWGNAME"), "5005 \"Drawing1.dwg\"");
  EXPECT_EQ(SetReal(L"DATE", 1.0), RTERROR);
  EXPECT_EQ(SetInteger(L"NOSUCH", 1), RTERROR);
  EXPECT_EQ(SetInteger(nullptr, 1), RTERROR);
  EXPECT_EQ(acedSetVar(L"OSMODE", nullptr), RTERROR);
}

TEST_F(SystemVariablesTest, OnlyTheRecordItselfIsRead) {
  resbuf record = Of(RTSHORT);
  record.resval.rint = 1;
  record.rbnext = reinterpret_cast<resbuf*>(0x5);
  EXPECT_EQ(acedSetVar(L"ORTHOMODE", &record), RTNORM);
  EXPECT_EQ(host.log.Last("acedSetVar")->chains.at(0).size(), 1U);
}

TEST_F(SystemVariablesTest, ABadRecordIsRefusedAndNoted) {
  resbuf record = Of(RTSTR);
  record.resval.rint = 5;
  EXPECT_EQ(acedSetVar(L"CLAYER", &record), RTERROR);
  EXPECT_EQ(host.log.Last("acedSetVar")->objection, "a text pointer that cannot be one (record 1)");
  EXPECT_EQ(Got(L"CLAYER"), "5005 \"0\"");
}

TEST_F(SystemVariablesTest, VariablesCanBeDefinedUntilTheReset) {
  embedded::SystemVariable variable;
  variable.value.type = RTLONG;
  variable.value.value.rlong = 70000;
  variable.lowest = 10;
  host.variables.Define(L"MyLong", variable);
  EXPECT_EQ(Got(L"MYLONG"), "5010 70000");
  EXPECT_EQ(SetLong(L"mylong", 80000), RTNORM);
  EXPECT_EQ(SetInteger(L"mylong", 9), RTERROR);
  EXPECT_EQ(SetInteger(L"mylong", 10), RTNORM);
  EXPECT_EQ(Got(L"MYLONG"), "5010 10");
  SetInteger(L"OSMODE", 37);
  host.Reset();
  EXPECT_EQ(host.variables.Find(L"MYLONG"), nullptr);
  EXPECT_EQ(Got(L"OSMODE"), "5003 0");
}

TEST_F(SystemVariablesTest, TheHostSaysWhyAValueIsRefused) {
  embedded::Record value;
  value.type = RTSHORT;
  value.value.rint = 2;
  EXPECT_EQ(host.variables.Set(L"nosuch", value), "no variable is named nosuch");
  EXPECT_EQ(host.variables.Set(L"CMDECHO", value), "the value is out of range");
  EXPECT_EQ(host.variables.Set(L"CLAYER", value), "the value is of the wrong type");
  EXPECT_EQ(host.variables.Set(L"DATE", value), "the variable is read-only");
  EXPECT_EQ(host.variables.Set(L"OSMODE", value), std::nullopt);
}

}  // namespace
}  // namespace lomlisp::test
