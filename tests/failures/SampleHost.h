// The embedded host with the example modules and a small drawing, anew for each attempt.
#pragma once

#include <examples/parts/Parts.h>
#include <examples/plan/Plan.h>
#include <tests/support/HostTest.h>

#include <string>

namespace lomlisp::test {

class SampleHost : public HostTest {
 protected:
  SampleHost() {
    for (const auto functions : {plan::Functions(), parts::Functions()})
      for (const LispFunction& function : functions) host.Define(function.name, function.call);
  }

  void Renew() {
    host.log.Reset();
    host.symbols.Reset();
    host.variables.Reset();
    host.answers.Clear();
    host.CloseDrawing();
    host.log.Enable(false);
    Draw();
    host.log.Enable(true);
    host.answers.Add(embedded::TypeText{L"0,0"});
    host.console.Take();
    host.log.Clear();
  }

  // All entities with all their groups.
  std::string DrawingText() {
    host.log.Reset();
    std::string text;
    ads_name name = {};
    for (int status = acdbEntNext(nullptr, name); status == RTNORM; status = acdbEntNext(name, name)) {
      const TextChain all(L"\"*\"");
      resbuf* const groups = acdbEntGetX(name, all);
      for (const embedded::Record& record : embedded::Capture(groups))
        text += record.type < 0 ? "" : std::to_string(record.type) + Utf8(embedded::ToText({record})) + " ";
      text += "\n";
      acutRelRb(groups);
    }
    return text;
  }

 private:
  static void Draw() {
    EXPECT_EQ(acdbRegApp(L"TAGS"), RTNORM);
    for (const wchar_t* groups : {
             L"((0 . \"BLOCK\") (2 . \"DOOR\") (70 . 2) (10 (0.0 0.0 0.0)))",
             L"((0 . \"ENDBLK\"))",
             L"((0 . \"LINE\") (8 . \"Walls\") (10 (0.0 0.0 0.0)) (11 (3.0 4.0 0.0))"
             L" (-3 (\"TAGS\" ((1000 . \"old\") (1070 . 7)))))",
             L"((0 . \"LWPOLYLINE\") (8 . \"Rooms\") (90 . 3) (70 . 1) (10 (1.0 0.0)) (42 . 0.5) (10 (2.0 "
             L"0.0)) (10 (2.0 2.0)))",
             L"((0 . \"TEXT\") (8 . \"Texts\") (10 (9.0 9.0 0.0)) (40 . 1.0) (1 . \"Kitchen\"))",
             L"((0 . \"INSERT\") (8 . \"Doors\") (66 . 1) (2 . \"DOOR\") (10 (5.0 5.0 0.0)))",
             L"((0 . \"ATTRIB\") (8 . \"Doors\") (10 (5.0 5.0 0.0)) (40 . 1.0) (1 . \"T30\") (2 . \"TYPE\"))",
             L"((0 . \"SEQEND\") (8 . \"Doors\"))",
         })
      EXPECT_FALSE(CLOMAdsLisp::EntMake(V(groups)).NilP()) << Utf8(groups);
  }
};

}  // namespace lomlisp::test
