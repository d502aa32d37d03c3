// Drawings in DXF files, ASCII and binary.
//
// A drawing that is opened and saved unchanged holds the same groups in the same order with the same
// values, known or not; only comments go, and $HANDSEED tells the next handle. It is saved in the version
// in which it was opened.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lomlisp::embedded {

// What is wrong, and in which line, from 1. In binary files it is the offset of the byte; in the message it
// is said which of both. 0 where it is no matter of one place.
struct DxfError {
  std::string message;
  uint64_t line = 0;
};

// Exactly one of them.
struct DxfOpened {
  std::unique_ptr<Drawing> drawing;
  std::optional<DxfError> error;
};

// How much is done: bytes at opening, objects at saving. Called about a hundred times, in large files
// every 4 MB, and with everything done at the end.
using DxfProgress = std::function<void(uint64_t done, uint64_t all)>;

DxfOpened OpenDxf(const std::filesystem::path& path, const DxfProgress& progress = {});
DxfOpened ReadDxf(std::string_view bytes, const DxfProgress& progress = {});

enum class DxfForm { Ascii, Binary };

// Saves under that name, at once or not at all: on an error the old file stays as it was. Then the drawing
// counts as unmodified. Erased objects are left out. Values that a file of that form cannot hold are errors:
// infinite numbers, and in binary files integers and chunks beyond the width of their code.
std::optional<DxfError> SaveDxf(Drawing& drawing, const std::filesystem::path& path,
                                DxfForm form = DxfForm::Ascii, const DxfProgress& progress = {});
// The same file in memory; empty where saving is an error.
std::string WriteDxf(Drawing& drawing, DxfForm form = DxfForm::Ascii);

}  // namespace lomlisp::embedded
