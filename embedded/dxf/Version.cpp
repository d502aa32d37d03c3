#include <embedded/dxf/Version.h>

namespace lomlisp::embedded {

namespace {

struct NamedVersion {
  std::wstring_view name;
  DxfVersion version;
};

constexpr NamedVersion kVersions[] = {
    {L"AC1012", DxfVersion::R13},   {L"AC1014", DxfVersion::R14},   {L"AC1015", DxfVersion::R2000},
    {L"AC1018", DxfVersion::R2004}, {L"AC1021", DxfVersion::R2007}, {L"AC1024", DxfVersion::R2010},
    {L"AC1027", DxfVersion::R2013}, {L"AC1032", DxfVersion::R2018},
};

}  // namespace

DxfVersion VersionOf(std::wstring_view text) {
  DxfVersion version = DxfVersion::R12;
  if (!text.starts_with(L"AC1") || text.size() != kVersions[0].name.size()) return version;
  for (const NamedVersion& one : kVersions)
    if (one.name <= text) version = one.version;
  return version;
}

}  // namespace lomlisp::embedded
