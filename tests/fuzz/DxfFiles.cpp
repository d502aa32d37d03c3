// DXF files, an A and the text or a B and what follows a binary file's mark: an error, or a drawing that is saved
// and opened again as the same.
#include <tests/fuzz/Fuzz.h>

#include <embedded/dxf/BinaryTags.h>
#include <embedded/dxf/Dxf.h>

void lomlisp::fuzz::Try(Input& input) {
  std::string bytes = input.ConsumeRemainingBytesAsString();
  if (bytes.empty()) return;
  bytes.replace(0, 1, bytes.front() == 'B' ? embedded::kBinarySentinel : "");
  const embedded::DxfOpened opened = embedded::ReadDxf(bytes);
  Require((opened.drawing != nullptr) != opened.error.has_value(), "there is a drawing or an error");
  if (opened.drawing == nullptr) return;
  for (const embedded::DxfForm form : {embedded::DxfForm::Ascii, embedded::DxfForm::Binary}) {
    const std::string saved = embedded::WriteDxf(*opened.drawing, form);
    if (saved.empty()) continue;
    const embedded::DxfOpened again = embedded::ReadDxf(saved);
    Require(again.drawing != nullptr, "what was saved can be opened");
    Require(embedded::WriteDxf(*again.drawing, form) == saved, "what was opened is saved as the same");
  }
}
