// What a platform of one's own counts.
#pragma once

#include <lomlisp/platform/ads.h>

int LiveBlocks();
// Since the start.
long AllocatedBlocks();
int PrintedTexts();
