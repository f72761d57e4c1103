#pragma once

// The one header that a test author includes.

#include "kxdefault.h"
#include "kxfunc.h"
#include "kxtest.h"
#include "kxvector.h"
#include "psalloc.h"
#include "psbase.h"
#include "pscstream.h"
#include "pscputick_gcc.h"
#include "psdefault.h"
#include "psenum.h"
#include "psfileiterator.h"
#include "psistream.h"
#include "psiterator.h"
#include "psstepiterator.h"
#include "pstest.h"
