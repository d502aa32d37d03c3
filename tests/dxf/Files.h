// What the tests of DXF files share: short files, and what became of them.
#pragma once

#include <embedded/dxf/Dxf.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace lomlisp::test {

using embedded::Drawing;
using embedded::DxfForm;
using embedded::Groups;
using embedded::Object;

// A file from "0 SECTION|2 HEADER|...": the code is what stands before the first blank of each part.
inline std::string Lines(std::string_view parts) {
  std::string file;
  while (!parts.empty()) {
    const size_t end = std::min(parts.find('|'), parts.size());
    const std::string_view part = parts.substr(0, end);
    const size_t blank = std::min(part.find(' '), part.size());
    file += std::string(part.substr(0, blank)) + "\n";
    file += std::string(part.substr(std::min(blank + 1, part.size()))) + "\n";
    parts.remove_prefix(std::min(end + 1, parts.size()));
  }
  return file;
}

// A file with one section, or with a header that names the version before it.
inline std::string WithSection(const std::string& name, const std::string& parts) {
  return Lines("0 SECTION|2 " + name + (parts.empty() ? "" : "|") + parts + "|0 ENDSEC|0 EOF");
}
inline std::string WithVersion(const std::string& version, const std::string& entities,
                               const std::string& codePage = "ANSI_1252") {
  return Lines("0 SECTION|2 HEADER|9 $ACADVER|1 " + version + "|9 $DWGCODEPAGE|3 " + codePage +
               "|0 ENDSEC|0 SECTION|2 ENTITIES|" + entities + "|0 ENDSEC|0 EOF");
}

// The drawing in a file that must be good.
inline std::unique_ptr<Drawing> Read(std::string_view file) {
  embedded::DxfOpened opened = embedded::ReadDxf(file);
  if (opened.error) {
    ADD_FAILURE() << opened.error->message;
    return std::make_unique<Drawing>(Drawing::Empty());
  }
  return std::move(opened.drawing);
}

// What is written for a file that must be good.
inline std::string Resaved(std::string_view file, DxfForm form = DxfForm::Ascii) {
  return embedded::WriteDxf(*Read(file), form);
}

}  // namespace lomlisp::test
