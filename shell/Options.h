// The command line.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace lomlisp::shell {

struct Options {
  std::optional<std::filesystem::path> drawing;
  std::vector<std::filesystem::path> modules;
  // A script's file or an expression; in the order in which they were given.
  struct Work {
    bool isFile;
    std::string text;
  };
  std::vector<Work> work;
  std::optional<std::filesystem::path> save;
  std::optional<std::filesystem::path> transcript;
  bool isBatch = false;
  bool isInteractive = false;  // the prompt comes after the scripts
  bool keepsGoing = false;
  bool checksMemory = false;
  unsigned timeout = 0;  // seconds; 0 for none
};

struct ReadOptions {
  std::optional<Options> options;
  std::string message;  // what is wrong, or what was asked for
  int status = 0;       // the program's, when there are no options
};

ReadOptions ReadCommandLine(int count, char** words);

}  // namespace lomlisp::shell
