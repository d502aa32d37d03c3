// Where the debugger stops.
#pragma once

void Stop();
