// Text in a caller's buffer.
#pragma once

#include <lomlisp/resbuf/AtomText.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace lomlisp {

// Appends pieces to a buffer of `size` characters. Each piece may use only half of the room that
// is left, so that a long one never takes it all, and is cut to that; the last slot of the buffer
// is zero after each piece. With a size of 0 it is never written.
class BoundedText {
 public:
  BoundedText(wchar_t* buffer, size_t size)
      : m_buffer(buffer), m_size(size), m_length(TextIn(buffer, size)) {}

  void Append(std::wstring_view text) {
    if (text.size() == 1)  // brackets and blanks, half of all pieces
      AppendCharacter(text.front());
    else
      Finish(text.copy(End(), Room(text.size())));
  }
  void Append(const AtomText& atom) {
    Finish(atom.CopyTo(End(), Room((std::min)(atom.Length(), kLongestAtom))));
  }

 private:
  // Atoms are printed through a buffer of 16,384 characters.
  static constexpr size_t kLongestAtom = 16383;

  static size_t TextIn(const wchar_t* buffer, size_t size) {
    return size > 0 ? static_cast<size_t>(std::find(buffer, buffer + size, L'\0') - buffer) : 0;
  }

  void AppendCharacter(wchar_t character) {
    const size_t room = Room(1);
    if (room == 1) *End() = character;
    Finish(room);
  }

  wchar_t* End() const { return m_buffer + m_length; }
  size_t Room(size_t wanted) const { return (std::min)(wanted, (m_size - m_length) / 2); }
  void Finish(size_t written) {
    if (m_size == 0) return;
    m_length += written;
    if (m_length < m_size) m_buffer[m_length] = 0;
    m_buffer[m_size - 1] = 0;
  }

  wchar_t* m_buffer;
  size_t m_size;
  size_t m_length;
};

}  // namespace lomlisp
