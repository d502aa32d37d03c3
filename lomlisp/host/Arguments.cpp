// The arguments of the LISP function that is being called.

#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/Node.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/Members.h>

#include <cstddef>
#include <initializer_list>
#include <utility>

using namespace lomlisp;

namespace {

using Parameters = std::initializer_list<CLOMAdsLispVar*>;

// What Car and Cdr find in a dotted list, one after the other.
void DistributeByCdr(CLOMAdsLispVar rest, Parameters parameters) {
  for (CLOMAdsLispVar* const* parameter = parameters.begin(); parameter != parameters.end(); ++parameter) {
    (*parameter)->SetQ(rest);
    if (!(*parameter)->NilP()) (*parameter)->Car();
    if (parameter + 1 != parameters.end()) rest.Cdr(true);
  }
}

// One argument for each parameter, nil where there is none left.
void Distribute(Parameters parameters) {
  CLOMAdsLispVar arguments;
  arguments.getArgs();
  const CLOMAdsLispVar::Element list = arguments.New();
  if (node::IsDottedList(list.get())) return DistributeByCdr(std::move(arguments), parameters);
  const size_t count = list != nullptr ? list->children.size() : 0;
  size_t position = 0;
  for (CLOMAdsLispVar* parameter : parameters) {
    *parameter = position < count ? ValueOf(list->children[position]) : CLOMAdsLispVar();
    ++position;
  }
}

}  // namespace

bool CLOMAdsLispVar::getArgs() {
  Clean();
  const resbuf* arguments = acedGetArgs();
  Element whole = NewNode();
  // The reader resets the reference that it is given when there is nothing to read.
  Element list = whole;
  if (!ADS_ElementListe(arguments, list, true)) return false;
  m_element = std::move(whole);
  return true;
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
