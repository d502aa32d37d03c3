// Stand-in: the array that is a template. Elements move by memcpy when it grows.
#pragma once

#include <afx.h>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
 public:
  CArray() {}
  ~CArray() { RemoveAll(); }

  INT_PTR GetSize() const { return m_size; }
  INT_PTR GetCount() const { return m_size; }
  bool IsEmpty() const { return m_size == 0; }
  INT_PTR GetUpperBound() const { return m_size - 1; }

  void SetSize(INT_PTR size, INT_PTR = -1) {
    for (INT_PTR index = size; index < m_size; ++index) m_elements[index].~TYPE();
    if (size > m_size || size == 0) Move(size);
    for (INT_PTR index = m_size; index < size; ++index) ::new (static_cast<void*>(m_elements + index)) TYPE;
    m_size = size;
  }
  void RemoveAll() { SetSize(0); }

  TYPE& GetAt(INT_PTR index) { return m_elements[index]; }
  const TYPE& GetAt(INT_PTR index) const { return m_elements[index]; }
  void SetAt(INT_PTR index, ARG_TYPE element) { m_elements[index] = element; }
  TYPE& ElementAt(INT_PTR index) { return m_elements[index]; }
  const TYPE& ElementAt(INT_PTR index) const { return m_elements[index]; }
  TYPE* GetData() { return m_elements; }
  const TYPE* GetData() const { return m_elements; }
  void SetAtGrow(INT_PTR index, ARG_TYPE element) {
    if (index >= m_size) SetSize(index + 1);
    m_elements[index] = element;
  }
  INT_PTR Add(ARG_TYPE element) {
    SetAtGrow(m_size, element);
    return m_size - 1;
  }
  TYPE& operator[](INT_PTR index) { return m_elements[index]; }
  const TYPE& operator[](INT_PTR index) const { return m_elements[index]; }

 private:
  void Move(INT_PTR size) {
    TYPE* const old = m_elements;
    m_elements = nullptr;
    if (size > 0) {
      m_elements = static_cast<TYPE*>(std::malloc(static_cast<size_t>(size) * sizeof(TYPE)));
      if (m_size > 0)
        std::memcpy(static_cast<void*>(m_elements), static_cast<const void*>(old),
                    static_cast<size_t>(m_size) * sizeof(TYPE));
    }
    std::free(static_cast<void*>(old));
  }

  TYPE* m_elements = nullptr;
  INT_PTR m_size = 0;
};
