// A shared object that is no module.
extern "C" int NoEntry() { return 1; }
