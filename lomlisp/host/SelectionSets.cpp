// Selection sets.

#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/resbuf/ADSList.h>

#include <cstddef>

using namespace lomlisp;

namespace {

// Four values that are taken one after the other, each by what it is.
class Positions {
 public:
  Positions(const CLOMAdsLispVar& v0, const CLOMAdsLispVar& v1, const CLOMAdsLispVar& v2,
            const CLOMAdsLispVar& v3)
      : m_values{v0, v1, v2, v3} {}

  // Null when the next value is no text.
  const wchar_t* TakeText() {
    if (!Next().StringP()) return nullptr;
    const wchar_t* text = nullptr;
    CLOMAdsLisp::SetQ(text, Take());
    return text;
  }

  // `point`, or null when the next value is no point.
  const double* TakePoint(double (&point)[3]) {
    if (!Next().PointP()) return nullptr;
    CLOMAdsLisp::SetQ(point, Take());
    return point;
  }

  // Whether the next value is a list of points, which is then in the chain.
  bool TakePoints(ADSList& points) {
    if (Next().PointP() || !Next().ListP() || Next().NilP()) return false;
    if (!CLOMAdsLisp::Car(Next()).PointP()) return false;
    Take().LispToDXF(points);
    return true;
  }

  // Leaves the chain empty when the next value is nil.
  void TakeGroups(ADSList& groups) {
    if (!Next().NilP()) Take().LispToDXF(groups);
  }

 private:
  const CLOMAdsLispVar& Next() const { return m_values[m_index]; }
  const CLOMAdsLispVar& Take() { return m_values[m_index++]; }

  CLOMAdsLispVar m_values[5];  // behind the last one, nil, which is never taken
  size_t m_index = 0;
};

}  // namespace

CLOMAdsLispVar CLOMAdsLisp::SSGet(const CLOMAdsLispVar& mode, const CLOMAdsLispVar& first,
                                  const CLOMAdsLispVar& second, const CLOMAdsLispVar& third) {
  Positions positions(mode, first, second, third);
  const wchar_t* const text = positions.TakeText();
  double from[3];
  double to[3];
  const void* where = positions.TakePoint(from);
  const double* const until = where != nullptr ? positions.TakePoint(to) : nullptr;
  ADSList points;
  if (positions.TakePoints(points)) where = static_cast<const resbuf*>(points);
  ADSList filter;
  positions.TakeGroups(filter);

  // Made beforehand: a set that nobody knows could not be freed.
  const ads_name none = {};
  ResBuf record(none, ADSNameType::PickSet);
  const CLOMAdsLispVar set(&record);
  return acedSSGet(text, where, until, filter, set.GetAtom().resval.rlname) == RTNORM ? set : Nil;
}
