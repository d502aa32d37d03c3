// The drawing that is open in the host, and its file.
#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/Session.h>
#include <embedded/Text.h>
#include <embedded/dxf/SafeFile.h>

#include <utility>

namespace lomlisp::embedded {

namespace {

// The system variables that a drawing's file holds, under the same name behind a $.
constexpr const wchar_t* kSavedVariables[] = {
    L"AUNITS", L"AUPREC", L"CLAYER",    L"ELEVATION", L"INSUNITS", L"LIMMAX", L"LIMMIN", L"LTSCALE",
    L"LUNITS", L"LUPREC", L"ORTHOMODE", L"OSMODE",    L"TEXTSIZE", L"USERI1", L"USERI2", L"USERI3",
    L"USERI4", L"USERI5", L"USERR1",    L"USERR2",    L"USERR3",   L"USERR4", L"USERR5"};

std::wstring HeaderName(const wchar_t* variable) { return std::wstring(L"$") + variable; }

// A record for the value of a header variable, in the type of the system variable's.
std::optional<Record> RecordOf(const GroupValue& value, short type) {
  Record record = Mark(type);
  if (const auto* text = std::get_if<std::wstring>(&value); text != nullptr && type == RTSTR) {
    record.text = *text;
    record.hasText = true;
    return record;
  }
  if (const auto* real = std::get_if<double>(&value); real != nullptr && type == RTREAL) {
    record.value.rreal = *real;
    return record;
  }
  if (const auto* point = std::get_if<Point>(&value);
      point != nullptr && (type == RTPOINT || type == RT3DPOINT)) {
    record.value.rpoint[0] = point->x;
    record.value.rpoint[1] = point->y;
    record.value.rpoint[2] = type == RTPOINT ? 0.0 : point->z;
    return record;
  }
  const auto* integer = std::get_if<long long>(&value);
  if (integer == nullptr || type != RTSHORT || !std::in_range<short>(*integer)) return std::nullopt;
  record.value.rint = static_cast<short>(*integer);
  return record;
}

// The value of a system variable in the kind of the header variable's old one.
GroupValue ValueOf(const Record& record, const GroupValue& old) {
  switch (record.type) {
    case RTSTR:
      return record.text;
    case RTREAL:
      return record.value.rreal;
    case RTPOINT:
    case RT3DPOINT: {
      const auto* point = std::get_if<Point>(&old);
      const double* at = record.value.rpoint;
      return Point{at[0], at[1], at[2], point != nullptr ? point->isFlat : record.type == RTPOINT};
    }
    default:
      return static_cast<long long>(record.value.rint);
  }
}

// Values that the host does not take stay in the header alone.
void TakeVariables(Drawing& drawing, SystemVariables& variables) {
  for (const wchar_t* name : kSavedVariables) {
    const Groups values = drawing.HeaderVariable(HeaderName(name));
    const SystemVariable* variable = variables.Find(name);
    if (values.size() != 1 || variable == nullptr) continue;
    if (const auto record = RecordOf(values.front().value, variable->value.type))
      variables.Set(name, *record);
  }
}

// What the header holds and the host does not take is left alone.
void GiveVariables(Drawing& drawing, const SystemVariables& variables) {
  SystemVariables asOpened = variables;
  SystemVariables current = variables;
  for (const wchar_t* name : kSavedVariables) {
    Groups values = drawing.HeaderVariable(HeaderName(name));
    const SystemVariable* variable = current.Find(name);
    if (values.size() != 1 || variable == nullptr) continue;
    GroupValue& value = values.front().value;
    const auto record = RecordOf(value, variable->value.type);
    if (!record || asOpened.Set(name, *record)) continue;
    GroupValue now = ValueOf(variable->value, value);
    if (now == ValueOf(asOpened.Find(name)->value, value)) continue;
    value = std::move(now);
    drawing.SetHeaderVariable(HeaderName(name), std::move(values));
  }
}

void SetText(SystemVariables& variables, const wchar_t* name, std::wstring text) {
  if (SystemVariable* variable = variables.Find(name)) variable->value.text = std::move(text);
}

void SetFileName(SystemVariables& variables, const std::filesystem::path& path) {
  SetText(variables, L"DWGNAME", FromUtf8(PathText(path.filename())));
  std::error_code ignored;
  const auto folder = std::filesystem::absolute(path, ignored).parent_path();
  SetText(variables, L"DWGPREFIX", folder.empty() ? std::wstring() : FromUtf8(PathText(folder / "")));
}

}  // namespace

Session& Host::CurrentSession() {
  if (!m_session) m_session = std::make_unique<Session>(std::make_unique<Drawing>(), switches.selectionSets);
  return *m_session;
}

Drawing& Host::CurrentDrawing() { return *CurrentSession().drawing; }

std::optional<DxfError> Host::Open(const std::filesystem::path& path, const DxfProgress& progress) {
  DxfOpened opened = OpenDxf(path, progress);
  if (opened.error) return opened.error;
  m_session = std::make_unique<Session>(std::move(opened.drawing), switches.selectionSets);
  TakeVariables(CurrentDrawing(), variables);
  SetFileName(variables, path);
  return std::nullopt;
}

std::optional<DxfError> Host::Save(const std::filesystem::path& path, DxfForm form) {
  Drawing& drawing = CurrentDrawing();
  GiveVariables(drawing, variables);
  if (auto error = SaveDxf(drawing, path, form)) return error;
  drawing.SetModified(false);
  SetFileName(variables, path);
  return std::nullopt;
}

void Host::CloseDrawing() { m_session.reset(); }

}  // namespace lomlisp::embedded
