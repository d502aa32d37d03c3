// From values to chains of records.

#include <lomlisp/convert/DxfWriter.h>
#include <lomlisp/lisp/CLOMAdsLispVar.h>

#include <optional>

using namespace lomlisp;

namespace {

// A run on trial.
struct Run {
  ADSList records;
  DxfWriter groups{records};
};

// Writes a tree in brackets; in DXF mode, lists of groups as bare runs. The members of a dotted
// list are always written in brackets.
class ChainWriter {
 public:
  ChainWriter(ADSList& target, bool dxf) : m_target(target) {
    if (dxf) m_run.emplace();
  }

  void Leaf(node::Node node) {
    if (node::IsNull(node))
      AppendCode(RTNIL);
    else
      Append(new ResBuf(node->atom));
  }

  bool Enter(const CLOMLispElement& list) {
    if (m_run && m_openDotted == 0 && WriteRun(list)) return false;
    AppendCode(RTLB);
    if (list.dotted == 1) ++m_openDotted;
    return true;
  }

  void BeforeChild(const CLOMLispElement&, size_t) {}

  void AfterChild(const CLOMLispElement& list, size_t index) {
    if (list.dotted == 1 && index == 0) AppendCode(RTDOTE);
  }

  void Leave(const CLOMLispElement& list) {
    AppendCode(RTLE);
    if (list.dotted == 1) --m_openDotted;
  }

 private:
  bool WriteRun(const CLOMLispElement& list) {
    const bool written = m_run->groups.WriteList(&list);
    if (written) m_target.Splice(m_run->records);
    m_run->records.Clear();
    return written;
  }

  void Append(ResBuf* record) { m_target.Add(record, ADSCopyFlag::Adopt); }
  void AppendCode(short code) { Append(new ResBuf(ADSResType(code))); }

  ADSList& m_target;
  std::optional<Run> m_run;  // in DXF mode only
  size_t m_openDotted = 0;
};

}  // namespace

ADSList& CLOMAdsLispVar::LispToADS(ADSList& target) const {
  LispToADS(m_element, target, false);
  return target;
}

ADSList& CLOMAdsLispVar::LispToDXF(ADSList& target) const {
  LispToADS(m_element, target, true);
  return target;
}

void CLOMAdsLispVar::LispToADS(const ConstElement& element, ADSList& target, bool dxf) {
  target.GoLast();
  ChainWriter writer(target, dxf);
  WalkTree(element.get(), writer);
}

bool CLOMAdsLispVar::LispToDXFList(const ConstElement& element, ADSList& target) {
  target.GoLast();
  return DxfWriter(target).WriteList(element.get());
}

bool CLOMAdsLispVar::LispToDXFElement(const ConstElement& element, ADSList& target) {
  target.GoLast();
  return DxfWriter(target).WriteGroup(element.get());
}

bool CLOMAdsLispVar::LispToXDataList(const ConstElement& element, ADSList& target) {
  target.GoLast();
  return DxfWriter(target).WriteExtendedData(element.get());
}
