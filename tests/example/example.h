#pragma once

#include <kx.h>

// The parameters that the tests share: asked once for all of them.

extern psStepIterator<int> g_length; // bytes that a call works on
extern psIterator<NtkiSize> g_size;  // columns and rows of the image that a call works on
