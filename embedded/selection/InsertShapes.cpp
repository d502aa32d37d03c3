#include <embedded/selection/Shape.h>

#include <algorithm>
#include <unordered_set>

namespace lomlisp::embedded {

namespace {

// What one INSERT may show: blocks that insert others several times grow beyond measure in a few levels.
constexpr size_t kMostShown = 250'000;

// Of a block's content only what is to be seen once it is inserted.
bool IsShown(const Object& entity) {
  constexpr int kVisibilityCode = 60;
  constexpr long long kConstant = 2;
  if (entity.isErased || IntegerOf(entity.groups, kVisibilityCode) == 1) return false;
  return entity.Type() != L"ATTDEF" || (IntegerOf(entity.groups, 70) & kConstant) != 0;
}

Transform ScalingOf(const Groups& insert) {
  return Scaling(RealOf(insert, 41, 1.0), RealOf(insert, 42, 1.0), RealOf(insert, 43, 1.0));
}

// The copies of a block that an INSERT places, one after another.
class Placement {
 public:
  Placement(const BlockDefinition& block, const Object& insert, const Transform& toWorld, Copies copies)
      : m_block(&block),
        m_columns(insert.groups, 70, 44, copies),
        m_rows(insert.groups, 71, 45, copies),
        m_axes(OwnAxes(insert, toWorld) * Translation(PointOf(insert.groups, 10)) *
               Rotation(RealOf(insert.groups, 50))),
        m_content(ScalingOf(insert.groups) * Translation(Scaled(PointOf(block.begin->groups, 10), -1))) {
    PlaceCopy();
  }

  const BlockDefinition& Block() const { return *m_block; }
  const Transform& ToWorld() const { return m_toWorld; }
  // The next entity of the content of this copy; null at its end.
  const Object* NextMember() {
    const auto& members = m_block->content.members;
    return m_member < members.size() ? members[m_member++] : nullptr;
  }
  // False behind the last copy.
  bool NextCopy() {
    m_member = 0;
    ++m_copy;
    PlaceCopy();
    return m_copy < m_columns.count * m_rows.count;
  }

 private:
  struct Axis {
    Axis(const Groups& groups, int countCode, int distanceCode, Copies copies)
        : count(std::clamp(IntegerOf(groups, countCode, 1), 1LL, kMostCopies)),
          distance(RealOf(groups, distanceCode)) {
      if (copies == Copies::All || count <= 2) return;
      distance *= static_cast<double>(count - 1);
      count = 2;
    }
    static constexpr long long kMostCopies = 32767;
    long long count;
    double distance;
  };

  // The distances of the array turn with the INSERT but are not scaled.
  void PlaceCopy() {
    const long long column = m_copy % m_columns.count;
    const long long row = m_copy / m_columns.count;
    const Point place{static_cast<double>(column) * m_columns.distance,
                      static_cast<double>(row) * m_rows.distance, 0};
    m_toWorld = m_axes * Translation(place) * m_content;
  }

  const BlockDefinition* m_block;
  Axis m_columns;
  Axis m_rows;
  Transform m_axes;
  Transform m_content;
  Transform m_toWorld;
  long long m_copy = 0;
  size_t m_member = 0;
};

class InsertWalk {
 public:
  InsertWalk(Drawing& drawing, Copies copies, const std::function<bool(const Shape&)>& visit)
      : m_drawing(drawing), m_copies(copies), m_visit(visit) {}

  void Run(const Object& insert) {
    Open(insert, Transform());
    while (!m_placements.empty() && m_shown < kMostShown) {
      if (const Object* member = m_placements.back().NextMember()) {
        ++m_shown;
        if (IsShown(*member) && !Show(*member)) return;
      } else {
        EndCopy();
      }
    }
  }

 private:
  // A block is not inserted into itself.
  void Open(const Object& insert, const Transform& toWorld) {
    if (FindPoint(insert.groups, 10) == nullptr) return;
    const BlockDefinition* block = m_drawing.FindBlock(TextOf(insert.groups, kNameCode));
    if (block != nullptr && m_openBlocks.insert(block).second)
      m_placements.emplace_back(*block, insert, toWorld, m_copies);
  }

  bool Show(const Object& entity) {
    const Transform toWorld = m_placements.back().ToWorld();
    m_shape.Clear();
    AddShape(entity, toWorld, m_shape);
    if (!m_visit(m_shape)) return false;
    if (entity.Type() == L"INSERT") Open(entity, toWorld);
    return true;
  }

  void EndCopy() {
    ++m_shown;
    if (m_placements.back().NextCopy()) return;
    m_openBlocks.erase(&m_placements.back().Block());
    m_placements.pop_back();
  }

  Drawing& m_drawing;
  Copies m_copies;
  const std::function<bool(const Shape&)>& m_visit;
  std::vector<Placement> m_placements;
  std::unordered_set<const BlockDefinition*> m_openBlocks;
  Shape m_shape;
  size_t m_shown = 0;
};

}  // namespace

void VisitShapes(Drawing& drawing, const Object& entity, Copies copies,
                 const std::function<bool(const Shape&)>& visit) {
  Shape shape;
  AddShape(entity, Transform(), shape);
  if (visit(shape) && entity.Type() == L"INSERT") InsertWalk(drawing, copies, visit).Run(entity);
}

}  // namespace lomlisp::embedded
