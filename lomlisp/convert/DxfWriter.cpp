#include <lomlisp/convert/DxfWriter.h>

#include <lomlisp/convert/DxfGroup.h>
#include <lomlisp/resbuf/BinaryData.h>

namespace lomlisp {

namespace {

constexpr short kExtendedData = -3;
constexpr short kApplicationName = 1001;

}  // namespace

// An atom and nil have no groups.
bool DxfWriter::OpenList(node::Node list) {
  if (m_failed.count(list) != 0) return false;
  if (list != nullptr && !node::IsAtom(list)) m_open.push({list, 0, false});
  return true;
}

bool DxfWriter::OpenApplication(node::Node application) {
  if (!node::IsProperList(application) || application->children.empty()) return false;
  const node::Node name = application->children.front().get();
  if (!node::IsString(name)) return false;
  Append(NewDxfGroup(name->atom, kApplicationName));
  m_open.push({application, 1, true});
  return true;
}

bool DxfWriter::WriteOpenLists() {
  bool good = true;
  while (good && !m_open.empty()) {
    Open& open = m_open.top();
    if (open.next == open.list->children.size()) {
      m_open.pop();
      continue;
    }
    const node::Node child = open.list->children[open.next++].get();
    good = open.isApplication ? OpenList(child) : BeginGroup(child);
  }
  for (; !m_open.empty(); m_open.pop())
    if (!m_open.top().isApplication && m_open.size() > 1) m_failed.insert(m_open.top().list);
  return good;
}

// Writes a group up to the lists of its extended data. A plain list of two or three numbers is a
// point, whatever its first number.
bool DxfWriter::BeginGroup(node::Node group) {
  if (node::IsPoint(group)) {
    double point[3];
    node::GetPoint(*group, point);
    Append(new ResBuf(point));
    return true;
  }
  if (group == nullptr || node::IsAtom(group) || group->children.size() < 2) return false;
  const node::Node first = group->children[0].get();
  const node::Node value = group->children[1].get();
  if (!node::IsInt(first)) return false;
  const auto code = static_cast<short>(first->atom);
  const short type = DxfType(code);
  if (type == code) return false;
  if (code == kExtendedData) {
    Append(NewDxfGroup(static_cast<short>(0), code));
    return OpenApplication(value);
  }
  if (type == RT3DPOINT) return WritePoint(value, code);
  if (!node::IsAtom(value)) return false;
  if (IsBinary(code) && !(node::IsString(value) && AreBytes(value->atom))) return false;
  Append(NewDxfGroup(value->atom, code));
  return true;
}

bool DxfWriter::WritePoint(node::Node value, short code) {
  if (!node::IsPoint(value)) return false;
  double point[3];
  node::GetPoint(*value, point);
  Append(NewDxfGroup(point, code));
  return true;
}

}  // namespace lomlisp
