// Lists of DXF groups as runs of records.
#pragma once

#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/resbuf/ADSList.h>

#include <unordered_set>

namespace lomlisp {

// Writes groups behind the cursor of a list. Extended data may hold groups with extended data in
// turn, to any depth, so the lists that are being written stand on a stack. After false, the
// records written up to there stay in the list. Linear in what is looked at.
class DxfWriter {
 public:
  explicit DxfWriter(ADSList& target) : m_target(target) {}

  bool WriteList(node::Node list) { return OpenList(list) && WriteOpenLists(); }
  bool WriteGroup(node::Node group) { return BeginGroup(group) && WriteOpenLists(); }
  bool WriteExtendedData(node::Node application) { return OpenApplication(application) && WriteOpenLists(); }

 private:
  struct Open {
    node::Node list;
    size_t next;
    bool isApplication;  // a name and lists of groups; otherwise groups
  };

  bool OpenList(node::Node list);
  bool OpenApplication(node::Node application);
  bool WriteOpenLists();
  bool BeginGroup(node::Node group);
  bool WritePoint(node::Node value, short code);
  void Append(ResBuf* record) { m_target.Add(record, ADSCopyFlag::Adopt); }

  ADSList& m_target;
  WalkStack<Open, 8> m_open;
  // Those on whose account an earlier WriteList failed, as they stood somewhere within its list. They are not
  // tried again.
  std::unordered_set<node::Node> m_failed;
};

}  // namespace lomlisp
