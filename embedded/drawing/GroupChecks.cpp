#include <embedded/drawing/GroupChecks.h>

#include <embedded/Text.h>
#include <embedded/drawing/EntityTypes.h>
#include <embedded/drawing/GivenGroups.h>

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace lomlisp::embedded {

namespace {

using Objection = std::optional<std::string>;

constexpr int kLineTypeCode = 6;
constexpr int kColorCode = 62;
constexpr int kLineWeightCode = 370;

// In hundredths of a millimetre; by block, by layer and the default are negative.
constexpr long long kLineWeights[] = {-3, -2, -1, 0,  5,  9,  13,  15,  18,  20,  25,  30,  35, 40,
                                      50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

std::string Quoted(std::wstring_view name) { return "\"" + Utf8(name) + "\""; }

Objection Missing(int code, const char* what, std::wstring_view name) {
  return AboutGroup(code) + "there is no " + what + " " + Quoted(name);
}

Objection CheckLayer(Drawing& drawing, std::wstring_view name) {
  if (drawing.FindEntry(L"LAYER", name) != nullptr || IsLegalName(name)) return std::nullopt;
  return AboutGroup(kLayerCode) + "a layer cannot have the name " + Quoted(name);
}

Objection CheckLineType(Drawing& drawing, std::wstring_view name) {
  const std::wstring folded = Folded(name);
  if (folded == L"BYLAYER" || folded == L"BYBLOCK") return std::nullopt;
  if (drawing.FindEntry(L"LTYPE", name) != nullptr) return std::nullopt;
  return Missing(kLineTypeCode, "line type", name);
}

Objection CheckBlock(Drawing& drawing, std::wstring_view name) {
  const std::wstring folded = Folded(name);
  if (folded.starts_with(L"*MODEL_SPACE") || folded.starts_with(L"*PAPER_SPACE"))
    return AboutGroup(kNameCode) + "a space cannot be inserted";
  if (drawing.FindBlock(name) != nullptr) return std::nullopt;
  return Missing(kNameCode, "block", name);
}

bool IsOneOf(std::wstring_view type, std::initializer_list<std::wstring_view> types) {
  return std::find(types.begin(), types.end(), type) != types.end();
}

Objection CheckText(Drawing& drawing, std::wstring_view type, int code, std::wstring_view text) {
  const bool isEntry = drawing.FindTable(type) != nullptr;
  if (code == kLayerCode && !isEntry) return CheckLayer(drawing, text);
  if (code == kLineTypeCode && (!isEntry || type == L"LAYER")) return CheckLineType(drawing, text);
  if (code == kStyleCode && IsOneOf(type, {L"TEXT", L"MTEXT", L"ATTRIB", L"ATTDEF"}))
    return drawing.FindEntry(L"STYLE", text) != nullptr ? std::nullopt : Missing(code, "text style", text);
  if (code == 3 && IsOneOf(type, {L"DIMENSION", L"LEADER", L"TOLERANCE"}))
    return drawing.FindEntry(L"DIMSTYLE", text) != nullptr ? std::nullopt
                                                           : Missing(code, "dimension style", text);
  if (code == kNameCode && type == L"INSERT") return CheckBlock(drawing, text);
  return std::nullopt;
}

Objection CheckInteger(std::wstring_view type, int code, long long value) {
  const bool isLayer = type == L"LAYER";
  if (!isLayer && FindEntityType(type) == nullptr) return std::nullopt;
  if (code == kColorCode) {
    const bool isColor = isLayer ? value != 0 && value >= -255 && value <= 255 : value >= 0 && value <= 256;
    if (!isColor) return AboutGroup(code) + "no color has the number " + std::to_string(value);
  }
  if (code == kLineWeightCode && !std::binary_search(std::begin(kLineWeights), std::end(kLineWeights), value))
    return AboutGroup(code) + "no line weight has the number " + std::to_string(value);
  return std::nullopt;
}

Objection CheckReal(std::wstring_view type, int code, double value) {
  const EntityType* entity = FindEntityType(type);
  if (entity == nullptr || value > 0.0) return std::nullopt;
  if (std::find(entity->positive.begin(), entity->positive.end(), code) == entity->positive.end())
    return std::nullopt;
  return AboutGroup(code) + "must be greater than zero";
}

Objection CheckPoint(std::wstring_view type, int code, const Point& point) {
  const bool isDirection = code == kExtrusionCode || (code == 11 && type == L"ELLIPSE");
  if (!isDirection || point.x != 0.0 || point.y != 0.0 || point.z != 0.0) return std::nullopt;
  return AboutGroup(code) + "a direction without a length";
}

}  // namespace

bool IsLegalName(std::wstring_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](wchar_t letter) {
    return letter >= L' ' && letter != L'\x7F' &&
           std::wstring_view(L"<>/\\\":;?*|,=`").find(letter) == std::wstring_view::npos;
  });
}

Objection CheckGroup(Drawing& drawing, std::wstring_view type, const Group& group) {
  if (const auto* text = std::get_if<std::wstring>(&group.value))
    return CheckText(drawing, type, group.code, *text);
  if (const auto* integer = std::get_if<long long>(&group.value))
    return CheckInteger(type, group.code, *integer);
  if (const auto* real = std::get_if<double>(&group.value)) return CheckReal(type, group.code, *real);
  if (const auto* point = std::get_if<Point>(&group.value)) return CheckPoint(type, group.code, *point);
  return std::nullopt;
}

Objection CheckApplication(Drawing& drawing, const ExtendedData& data) {
  if (drawing.FindEntry(L"APPID", data.application) != nullptr) return std::nullopt;
  return AboutGroup(kApplicationCode) + "the application " + Quoted(data.application) + " is not registered";
}

void NeedLayer(Drawing& drawing, std::wstring_view name) {
  // A file without a table of layers does not need entries either.
  if (drawing.FindTable(L"LAYER") == nullptr || drawing.FindEntry(L"LAYER", name) != nullptr) return;
  drawing.NewEntry(L"LAYER", name, {{70, 0LL}, {kColorCode, 7LL}, {kLineTypeCode, L"Continuous"}});
}

bool ContainBlock(Drawing& drawing, std::vector<std::wstring> names, std::wstring_view wanted) {
  const std::wstring foldedWanted = Folded(wanted);
  std::unordered_set<std::wstring> seen;
  while (!names.empty()) {
    const std::wstring name = Folded(names.back());
    names.pop_back();
    if (name == foldedWanted) return true;
    const BlockDefinition* block = seen.insert(name).second ? drawing.FindBlock(name) : nullptr;
    if (block == nullptr) continue;
    for (const Object* entity : block->content.members)
      if (entity->Type() == L"INSERT") names.emplace_back(TextOf(entity->groups, kNameCode));
  }
  return false;
}

}  // namespace lomlisp::embedded
