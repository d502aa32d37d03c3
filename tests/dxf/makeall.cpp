// makeall OUT [IN]: makes entities of every described type in a new drawing, or in each IN/*.dxf, through the
// platform's functions, and saves as OUT/new.dxf, or under the same names.
#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/drawing/Drawing.h>
#include <embedded/drawing/GroupRecords.h>
#include <lomlisp/platform/modules.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace lomlisp::embedded;

const std::vector<Groups>& ForAllVersions() {
  static const std::vector<Groups> all = {
      {{0, L"LAYER"}, {2, L"Made"}, {62, 3LL}},
      {{0, L"LINE"}, {8, L"Made"}, {62, 1LL}, {10, Point{0, 0, 0}}, {11, Point{5, 5, 0}}},
      {{0, L"POINT"}, {10, Point{1, 1, 0}}},
      {{0, L"CIRCLE"}, {10, Point{2, 2, 0}}, {40, 1.5}},
      {{0, L"ARC"}, {10, Point{2, 2, 0}}, {40, 2.5}, {50, 30.0}, {51, 200.0}},
      {{0, L"TEXT"}, {10, Point{0, 7, 0}}, {40, 0.5}, {1, L"Gr\u00F6\u00DFe \u0394"}, {50, 15.0}},
      {{0, L"SOLID"}, {10, Point{0, 0, 0}}, {11, Point{1, 0, 0}}, {12, Point{0, 1, 0}}, {13, Point{1, 1, 0}}},
      {{0, L"TRACE"}, {10, Point{0, 0, 0}}, {11, Point{1, 0, 0}}, {12, Point{0, 1, 0}}, {13, Point{1, 1, 0}}},
      {{0, L"3DFACE"},
       {10, Point{0, 0, 1}},
       {11, Point{1, 0, 1}},
       {12, Point{1, 1, 1}},
       {13, Point{0, 1, 2}}},
      {{0, L"POLYLINE"}, {66, 1LL}, {70, 1LL}},
      {{0, L"VERTEX"}, {10, Point{0, 0, 0}}, {42, 0.5}},
      {{0, L"VERTEX"}, {10, Point{4, 0, 0}}},
      {{0, L"VERTEX"}, {10, Point{4, 4, 0}}},
      {{0, L"SEQEND"}},
      {{0, L"POLYLINE"}, {66, 1LL}, {70, 8LL}},
      {{0, L"VERTEX"}, {10, Point{0, 0, 0}}, {70, 32LL}},
      {{0, L"VERTEX"}, {10, Point{4, 0, 3}}, {70, 32LL}},
      {{0, L"SEQEND"}},
      {{0, L"BLOCK"}, {2, L"MadeBlock"}, {70, 2LL}, {10, Point{0, 0, 0}}},
      {{0, L"LINE"}, {10, Point{0, 0, 0}}, {11, Point{1, 0, 0}}},
      {{0, L"ATTDEF"}, {10, Point{0, 1, 0}}, {40, 0.2}, {1, L""}, {3, L"Number"}, {2, L"NR"}, {70, 0LL}},
      {{0, L"ENDBLK"}},
      {{0, L"INSERT"}, {66, 1LL}, {2, L"MadeBlock"}, {10, Point{8, 8, 0}}, {50, 45.0}},
      {{0, L"ATTRIB"}, {10, Point{8, 9, 0}}, {40, 0.2}, {1, L"17"}, {2, L"NR"}, {70, 0LL}},
      {{0, L"SEQEND"}},
      {{0, L"INSERT"}, {2, L"MadeBlock"}, {10, Point{8, 0, 0}}, {70, 2LL}, {71, 3LL}, {44, 2.0}, {45, 2.0}},
      {{0, L"LINE"},
       {10, Point{0, 0, 0}},
       {11, Point{1, 0, 0}},
       {-3, 0LL},
       {1001, L"MADE"},
       {1000, L"tag"},
       {1070, 7LL}},
  };
  return all;
}

const std::vector<Groups>& ForNewerVersions() {
  static const std::vector<Groups> newer = {
      {{0, L"LWPOLYLINE"},
       {90, 3LL},
       {70, 1LL},
       {10, Point{0, 0, 0}},
       {10, Point{3, 0, 0}},
       {42, -1.0},
       {10, Point{3, 3, 0}}},
      {{0, L"ELLIPSE"}, {10, Point{5, 5, 0}}, {11, Point{3, 0, 0}}, {40, 0.5}},
      {{0, L"MTEXT"}, {10, Point{0, 9, 0}}, {40, 0.5}, {41, 6.0}, {71, 1LL}, {1, L"two\\Plines"}},
  };
  return newer;
}

bool Make(const std::vector<Groups>& all) {
  Host& host = Host::Instance();
  for (const Groups& groups : all) {
    Chain chain;
    for (const Group& group : groups) AppendRecord(chain, group, host.CurrentDrawing());
    resbuf* records = Materialise(chain, host.ledger, Owner::Client);
    const int status = acdbEntMake(records);
    acutRelRb(records);
    if (status == RTNORM) continue;
    std::fprintf(stderr, "%ls: %s\n", std::get<std::wstring>(groups.front().value).c_str(),
                 host.log.Last("acdbEntMake")->objection.value_or("").c_str());
    return false;
  }
  return true;
}

bool MakeAll(const fs::path& to) {
  Host& host = Host::Instance();
  acdbRegApp(L"MADE");
  const bool isOld = host.CurrentDrawing().version == DxfVersion::R12;
  if (!Make(ForAllVersions()) || (!isOld && !Make(ForNewerVersions()))) return false;
  const auto error = host.Save(to);
  if (error) std::fprintf(stderr, "%s\n", error->message.c_str());
  return !error;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2 || count > 3) {
    std::fprintf(stderr, "makeall OUT [IN]\n");
    return 2;
  }
  const fs::path out = arguments[1];
  fs::create_directories(out);
  if (count == 2) return MakeAll(out / "new.dxf") ? 0 : 1;
  for (const fs::directory_entry& entry : fs::directory_iterator(arguments[2])) {
    if (const auto error = Host::Instance().Open(entry.path())) {
      std::fprintf(stderr, "%s\n", error->message.c_str());
      return 1;
    }
    if (!MakeAll(out / entry.path().filename())) return 1;
  }
  return 0;
}
