// What the module Unresolved asks for, in a DLL that it does not find.
int acedNothingOfTheKind() { return 0; }
