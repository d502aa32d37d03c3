// The shortest client module, and a program that calls it as LISP would.

#include <embedded/Host.h>
#include <lomlisp/lomlisp.h>

#include <iostream>

// (SUM numbers) gives the sum of a list of numbers.
int Sum() {
  CLOMAdsLispVar numbers;
  CLOMAdsLisp::Parameter(numbers);
  double sum = 0.0;
  for (; !numbers.NilP(); CLOMAdsLisp::SetQ(numbers, CLOMAdsLisp::Cdr(numbers))) {
    double number = 0.0;
    CLOMAdsLisp::SetQ(number, CLOMAdsLisp::Car(numbers));
    sum += number;
  }
  CLOMAdsLisp::Return(sum);
  return RTNORM;
}

int main() {
  auto& host = lomlisp::embedded::Host::Instance();
  host.Define(L"SUM", Sum);
  std::wcout << host.Evaluate(L"(SUM '(1 2.5 3))").Text() << L"\n";  // 6.5
}
