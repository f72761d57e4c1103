#pragma once

#include "psalloc.h"

// Writes beyond a block. The margins of a block hold a pattern; what has changed there was written
// by something that was not given this memory.

// Damage that was found, in one block.
struct psBlockDamage {
    int place;     // of the block, from 0, as it was allocated; dumps number blocks alike
    int size;      // of the block
    psString name; // of the object that it belongs to; may be empty
    int under;     // bytes from the block's begin back to the farthest changed one; 0: none changed
    int over;      // bytes from its end to the farthest changed one, that one included
};

// "block 1 (32768 bytes, Vector 8u len=32768): 200 bytes over its end".
psString psDamageText(const psBlockDamage& damage);

// The damage of all live blocks, and of those that were released since the last call. Found
// once: the pattern is renewed.
psList<psBlockDamage> psTakeDamage();

// For the allocator: a block that begins to live, and one that is about to be released.
void psFillMargins(const Address& block);
void psKeepDamage(const Address& block);
