// The lazy results of CLOMAdsLisp::Cdr, Cons and Reverse.
//
// They let SetQ(x, Cdr(x)), SetQ(x, Cons(a, x)) and SetQ(x, Reverse(x)) change x in place, while
// making another value from them leaves x alone. A proxy owns nothing: it must be used up in the
// statement that made it, by a CLOMAdsLispVar, by SetQ or (CLOMReverseProxy) by Nth.
#pragma once

class CLOMAdsLispVar;

class CLOMCdrProxy {
 public:
  explicit CLOMCdrProxy(const CLOMAdsLispVar& list) : m_list(&list) {}
  const CLOMAdsLispVar& GetList() const { return *m_list; }

 private:
  const CLOMAdsLispVar* m_list;
};

class CLOMConsProxy {
 public:
  CLOMConsProxy(const CLOMAdsLispVar& first, const CLOMAdsLispVar& second)
      : m_first(&first), m_second(&second) {}
  const CLOMAdsLispVar& GetFirst() const { return *m_first; }
  const CLOMAdsLispVar& GetSecond() const { return *m_second; }

 private:
  const CLOMAdsLispVar* m_first;
  const CLOMAdsLispVar* m_second;
};

class CLOMReverseProxy {
 public:
  explicit CLOMReverseProxy(const CLOMAdsLispVar& list) : m_list(&list) {}
  const CLOMAdsLispVar& GetList() const { return *m_list; }

 private:
  const CLOMAdsLispVar* m_list;
};
