// The content of a value as a number: the same for all peers that hold the same atoms in the same lists, so
// that none can leave out work. A dotted pair counts as a list of its two parts, a name of an entity as the
// integer that it is.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

class Digest {
 public:
  void Open() { Add('('); }
  void Close() { Add(')'); }
  void Integer(int64_t value) { Atom('i', static_cast<uint64_t>(value)); }
  void Real(double value) {
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    Atom('r', bits);
  }
  // Characters beyond ASCII are in no sample.
  template <class Character>
  void Characters(const Character* text, size_t length) {
    uint64_t hash = length;
    for (size_t i = 0; i < length; ++i) hash = Mixed(hash, static_cast<uint64_t>(text[i]));
    Atom('t', hash);
  }
  void Characters(std::wstring_view text) { Characters(text.data(), text.size()); }
  void Characters(std::string_view text) { Characters(text.data(), text.size()); }

  // The number of atoms, and the hash.
  std::string Text() const { return std::to_string(m_atoms) + "/" + std::to_string(m_hash); }

 private:
  static uint64_t Mixed(uint64_t hash, uint64_t value) {
    hash = (hash ^ value) * 0x9E3779B97F4A7C15u;
    return hash ^ (hash >> 29);
  }
  void Add(uint64_t value) { m_hash = Mixed(m_hash, value); }
  void Atom(char kind, uint64_t value) {
    Add(static_cast<uint64_t>(kind));
    Add(value);
    ++m_atoms;
  }

  uint64_t m_hash = 1;
  uint64_t m_atoms = 0;
};
