// The functions that modules define.
#pragma once

// Calls one; whether there is one of that name, and it answered well.
bool CallFunction(const wchar_t* name);
