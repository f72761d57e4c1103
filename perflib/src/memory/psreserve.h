#pragma once

// Copies of all live blocks of a test: made before a set-and-use measurement, written back before
// each of its calls. Objects keep their copies themselves (psObject), raw buffers are copied here.

// Throws psException when there is no memory for a copy. Copies from before are dropped.
void psReserveBlocks();
void psRestoreBlocks();
void psDropReservedBlocks();
