// The arguments of the LISP function that is being called.

#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/Node.h>

#include <initializer_list>

namespace {

// One argument for each parameter, nil where there is none left.
void Distribute(std::initializer_list<CLOMAdsLispVar*> parameters) {
  CLOMAdsLispVar rest;
  rest.getArgs();
  // The rest of a dotted list becomes a proper one, so it has to be a new one.
  const bool forceCopy = lomlisp::node::IsDottedList(rest.New().get());
  for (CLOMAdsLispVar* const* parameter = parameters.begin(); parameter != parameters.end(); ++parameter) {
    (*parameter)->SetQ(rest);
    if (!(*parameter)->NilP()) (*parameter)->Car();
    if (parameter + 1 != parameters.end()) rest.Cdr(forceCopy);
  }
}

}  // namespace

bool CLOMAdsLispVar::getArgs() {
  Clean();
  const resbuf* arguments = acedGetArgs();
  m_element = lomlisp::NewNode();
  // The reader resets the reference that it is given when there is nothing to read.
  Element list = m_element;
  if (ADS_ElementListe(arguments, list, true)) return true;
  Clean();
  return false;
}

CLOMAdsLispVar CLOMAdsLisp::ParameterList() {
  CLOMAdsLispVar arguments;
  arguments.getArgs();
  return arguments;
}

void CLOMAdsLisp::Parameter(CArray<CLOMAdsLispVar, CLOMAdsLispVar&>& parameters) {
  CLOMAdsLispVar rest;
  rest.getArgs();
  if (rest.NilP()) return;
  do {
    if (!rest.ListP()) break;
    CLOMAdsLispVar parameter;
    SetQ(parameter, Car(rest));
    parameters.SetAtGrow(parameters.GetSize(), parameter);
    SetQ(rest, Cdr(rest));
  } while (!rest.NilP());
}

void CLOMAdsLisp::Parameter(CLOMAdsLispVar& p1) { Distribute({&p1}); }

void CLOMAdsLisp::Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2) { Distribute({&p1, &p2}); }

void CLOMAdsLisp::Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3) {
  Distribute({&p1, &p2, &p3});
}

void CLOMAdsLisp::Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4) {
  Distribute({&p1, &p2, &p3, &p4});
}

void CLOMAdsLisp::Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4,
                            CLOMAdsLispVar& p5) {
  Distribute({&p1, &p2, &p3, &p4, &p5});
}

void CLOMAdsLisp::Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4,
                            CLOMAdsLispVar& p5, CLOMAdsLispVar& p6) {
  Distribute({&p1, &p2, &p3, &p4, &p5, &p6});
}

void CLOMAdsLisp::Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4,
                            CLOMAdsLispVar& p5, CLOMAdsLispVar& p6, CLOMAdsLispVar& p7) {
  Distribute({&p1, &p2, &p3, &p4, &p5, &p6, &p7});
}

void CLOMAdsLisp::Parameter(CLOMAdsLispVar& p1, CLOMAdsLispVar& p2, CLOMAdsLispVar& p3, CLOMAdsLispVar& p4,
                            CLOMAdsLispVar& p5, CLOMAdsLispVar& p6, CLOMAdsLispVar& p7, CLOMAdsLispVar& p8) {
  Distribute({&p1, &p2, &p3, &p4, &p5, &p6, &p7, &p8});
}
